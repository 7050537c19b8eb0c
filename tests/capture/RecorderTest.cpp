#include "capture/Recorder.h"
#include "platform/multimedia/support/FakeWaveIn.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

const CWaveFormat g_format(1, 11025, 16);

TEST(Recorder, DeviceNumberNoughtIsThePreferredDevice) {
    const CFakeWaveInScope fake;
    fake->SetDevices({{.strName = "A"}, {.strName = "B"}});
    {
        CRecorder recorder;
        EXPECT_FALSE(recorder.Close());
        EXPECT_TRUE(recorder.Open(g_format, 0));
        EXPECT_FALSE(recorder.Open(g_format, 0)) << "open already";
        EXPECT_TRUE(recorder.Close());
        EXPECT_TRUE(recorder.Open(g_format, 2));
        EXPECT_EQ(fake->GetOpenCount(), 1);
    }
    EXPECT_EQ(fake->GetOpenCount(), 0) << "the recorder closes what is open when it goes";
    ASSERT_EQ(fake->GetOpenings().size(), 2U);
    EXPECT_EQ(fake->GetOpenings()[0].uDeviceId, WAVE_MAPPER);
    EXPECT_EQ(fake->GetOpenings()[1].uDeviceId, 1U);
}

TEST(Recorder, QueuesItsBuffersInOrderAndWaitsForThem) {
    const CFakeWaveInScope fake;
    CRecorder recorder;
    recorder.SetBufferCount(3);
    ASSERT_TRUE(recorder.AllocateBuffers(4));
    EXPECT_EQ(recorder.GetBuffer(3), nullptr);
    ASSERT_TRUE(recorder.Open(g_format, 0));
    recorder.AddAllBuffers();
    EXPECT_EQ(fake->GetCalls().nAddBuffer, 3);
    recorder.Start();
    EXPECT_FALSE(recorder.WaitForBuffer(1));
    fake->Feed(std::vector<std::int16_t>{1, 2, 3, 4, 5});
    EXPECT_TRUE(recorder.WaitForBuffer(0));
    EXPECT_EQ(recorder.GetCompleted(), 2);
    const auto* pnSecond = reinterpret_cast<const std::int16_t*>(recorder.GetBuffer(1)->GetData());
    EXPECT_EQ(pnSecond[0], 3);
    EXPECT_EQ(pnSecond[1], 4);
    recorder.Close();
    EXPECT_TRUE(recorder.FreeBuffers());
    EXPECT_EQ(recorder.GetBuffer(0), nullptr);
}

TEST(Recorder, TellsWhenThereIsNoMemory) {
    CRecorder recorder;
    recorder.SetBufferCount(2);
    EXPECT_FALSE(recorder.AllocateBuffers(-1));
}

}  // namespace
