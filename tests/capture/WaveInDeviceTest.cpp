#include "capture/WaveBuffer.h"
#include "capture/WaveFormat.h"
#include "capture/WaveInDevice.h"
#include "platform/multimedia/support/FakeWaveIn.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <vector>

namespace {

TEST(WaveFormat, IsTheFileHeadersLayout) {
    const CWaveFormat format(1, 11025, 16);
    static_assert(sizeof(CWaveFormat) == 18);
    const unsigned char expected[18] = {1, 0, 1, 0, 0x11, 0x2B, 0, 0, 0x22, 0x56, 0, 0, 2, 0, 16, 0, 0, 0};
    EXPECT_EQ(std::memcmp(&format, expected, sizeof expected), 0);
    CWaveFormat other(1, 8000, 8);
    other.Set(2, 44100, 12);
    EXPECT_EQ(+other.nBlockAlign, 2) << "12 bits count as one byte";
    EXPECT_EQ(+other.nAvgBytesPerSec, 88200U);
}

TEST(WaveBuffer, IsSilenceBehindAnEmptyHeader) {
    const CWaveBuffer buffer(2048);
    ASSERT_NE(buffer.GetData(), nullptr);
    EXPECT_EQ(buffer.GetData(), buffer.lpData);
    EXPECT_TRUE(std::all_of(buffer.GetData(), buffer.GetData() + 2048, [](char c) { return c == 0; }));
    EXPECT_EQ(buffer.dwBufferLength, 2048U);
    EXPECT_EQ(buffer.dwFlags | buffer.dwBytesRecorded | buffer.dwLoops, 0U);
    const CWaveBuffer impossible(-1);
    EXPECT_EQ(impossible.GetData(), nullptr);
    EXPECT_EQ(impossible.dwBufferLength, 0U);
}

TEST(WaveInDevice, TellsItsClassAndMakesItself) {
    const CWaveInDevice device;
    EXPECT_STREQ(device.GetRuntimeClass().szName, "CWaveInDevice");
    EXPECT_EQ(device.GetRuntimeClass().nSchema, 1);
    const auto pOther = device.GetRuntimeClass().CreateObject();
    EXPECT_EQ(&pOther->GetRuntimeClass(), &device.GetRuntimeClass());
}

TEST(WaveInDevice, ResetsNothingBeforeOpeningNorAfterARefusal) {
    const CFakeWaveInScope fake;
    CWaveInDevice device;
    CEvent event;
    EXPECT_EQ(device.GetLastResult(), MMSYSERR_BADDEVICEID);
    device.Reset();
    fake->SetDevices({{.bRefusesAll = true}});
    EXPECT_FALSE(device.Open(0, CWaveFormat(1, 11025, 16), event));
    device.Reset();
    EXPECT_EQ(fake->GetCalls().nReset, 0);
    EXPECT_EQ(device.GetLastResult(), WAVERR_BADFORMAT);
}

TEST(WaveInDevice, CountsFilledBuffersAndSetsTheEventForNothingElse) {
    const CFakeWaveInScope fake;
    CWaveInDevice device;
    CEvent event;
    ASSERT_TRUE(device.Open(WAVE_MAPPER, CWaveFormat(1, 11025, 16), event));
    EXPECT_FALSE(event.Wait(0)) << "opening is a message, too";
    CWaveBuffer first(4);
    CWaveBuffer second(4);
    for (CWaveBuffer* const pBuffer : {&first, &second}) {
        EXPECT_EQ(device.PrepareHeader(*pBuffer), MMSYSERR_NOERROR);
        EXPECT_EQ(device.AddBuffer(*pBuffer), MMSYSERR_NOERROR);
    }
    device.Start();
    fake->Feed(std::vector<std::int16_t>{1, 2, 3});
    EXPECT_EQ(device.GetCompleted(), 1);
    EXPECT_TRUE(event.Wait(0));
    device.TakeCompleted();
    EXPECT_EQ(device.GetCompleted(), 0);
    device.Stop();
    device.Reset();
    EXPECT_EQ(device.GetCompleted(), 1);
    EXPECT_TRUE(event.Wait(0));
    EXPECT_TRUE(device.Close());
    EXPECT_FALSE(event.Wait(0)) << "closing is a message, too";
    EXPECT_FALSE(device.Close());
    EXPECT_EQ(device.GetLastResult(), MMSYSERR_INVALHANDLE);
}

}  // namespace
