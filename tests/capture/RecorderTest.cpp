#include "capture/Recorder.h"
#include "platform/multimedia/support/FakeWaveIn.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

// What a capture stands on: the format, a buffer, the device, and the recorder that puts them together.

namespace {

const CWaveFormat g_format(1, 11025, 16);

TEST(WaveFormat, IsTheFileHeadersLayout) {
    static_assert(sizeof(CWaveFormat) == 18);
    const unsigned char expected[18] = {1, 0, 1, 0, 0x11, 0x2B, 0, 0, 0x22, 0x56, 0, 0, 2, 0, 16, 0, 0, 0};
    EXPECT_EQ(std::memcmp(&g_format, expected, sizeof expected), 0);
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
    EXPECT_EQ(CWaveBuffer(-1).dwBufferLength, 0U);
}

TEST(WaveInDevice, ResetsNothingBeforeOpeningNorAfterARefusal) {
    const CFakeWaveInScope fake;
    CWaveInDevice device;
    CEvent event;
    EXPECT_STREQ(device.GetRuntimeClass().szName, "CWaveInDevice");
    EXPECT_EQ(device.GetRuntimeClass().nSchema, 1);
    const auto pMade = device.GetRuntimeClass().CreateObject();
    EXPECT_NE(dynamic_cast<CWaveInDevice*>(pMade.get()), nullptr);
    EXPECT_EQ(device.GetLastResult(), MMSYSERR_BADDEVICEID);
    device.Reset();
    fake->SetDevices({{.bRefusesAll = true}});
    EXPECT_FALSE(device.Open(0, g_format, event));
    device.Reset();
    EXPECT_EQ(fake->GetCalls().nReset, 0);
    EXPECT_EQ(device.GetLastResult(), WAVERR_BADFORMAT);
    EXPECT_FALSE(device.Close());
    EXPECT_EQ(device.GetLastResult(), MMSYSERR_INVALHANDLE);
}

TEST(Recorder, QueuesItsBuffersInOrderAndIsWokenByFilledOnesOnly) {
    const CFakeWaveInScope fake;
    auto pRecorder = std::make_unique<CRecorder>();
    EXPECT_FALSE(pRecorder->Close()) << "not open yet";
    pRecorder->SetBufferCount(3);
    ASSERT_TRUE(pRecorder->AllocateBuffers(4));
    EXPECT_EQ(pRecorder->GetBuffer(3), nullptr);
    ASSERT_TRUE(pRecorder->Open(g_format, 0));
    EXPECT_FALSE(pRecorder->Open(g_format, 0)) << "open already";
    EXPECT_FALSE(pRecorder->WaitForBuffer(0)) << "opening is a message, too";
    pRecorder->AddAllBuffers();
    EXPECT_EQ(fake->GetCalls().nAddBuffer, 3);
    pRecorder->Start();
    fake->Feed(std::vector<std::int16_t>{1, 2, 3, 4, 5});
    EXPECT_TRUE(pRecorder->WaitForBuffer(0));
    EXPECT_EQ(pRecorder->GetCompleted(), 2);
    const auto* pnSecond = reinterpret_cast<const std::int16_t*>(pRecorder->GetBuffer(1)->GetData());
    EXPECT_EQ(pnSecond[0], 3);
    EXPECT_EQ(pnSecond[1], 4);
    pRecorder->TakeCompleted();
    pRecorder->Reset();
    EXPECT_EQ(pRecorder->GetCompleted(), 2) << "the third comes back as it is";
    pRecorder->ResetEvent();
    EXPECT_TRUE(pRecorder->Close());
    EXPECT_FALSE(pRecorder->WaitForBuffer(0)) << "closing is a message, too";
    EXPECT_TRUE(pRecorder->FreeBuffers());
    EXPECT_EQ(pRecorder->GetBuffer(0), nullptr);
    EXPECT_FALSE(pRecorder->AllocateBuffers(-1)) << "there is no memory";
    EXPECT_TRUE(pRecorder->Open(g_format, 1));
    EXPECT_EQ(pRecorder->GetCompleted(), 0) << "it counts from the opening";
    pRecorder.reset();
    EXPECT_EQ(fake->GetOpenCount(), 0) << "it closes what is open when it goes";
}

}  // namespace
