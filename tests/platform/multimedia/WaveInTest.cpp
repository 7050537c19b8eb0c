#include "platform/multimedia/WaveIn.h"
#include "platform/multimedia/WaveInQueue.h"
#include "platform/multimedia/support/FakeWaveIn.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <deque>
#include <random>
#include <vector>

using testing::ElementsAre;

namespace {

struct Event {
    HWAVEIN hWaveIn;
    UINT uMessage;
    std::uintptr_t dwHeader;
    bool operator==(const Event&) const = default;
};

void Record(HWAVEIN hWaveIn, UINT uMessage, std::uintptr_t dwInstance, std::uintptr_t dwParam1,
            std::uintptr_t /*dwParam2*/) {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): a callback carries its object as a number
    reinterpret_cast<std::vector<Event>*>(dwInstance)->push_back({hWaveIn, uMessage, dwParam1});
}

struct Buffer : WAVEHDR {
    explicit Buffer(std::size_t nSamples) : samples(nSamples) {
        lpData = reinterpret_cast<char*>(samples.data());
        dwBufferLength = static_cast<DWORD>(2 * nSamples);
    }
    std::vector<std::int16_t> samples;
};

constexpr UINT HEADER_SIZE = sizeof(WAVEHDR);

class WaveIn : public testing::Test {
protected:
    MMRESULT Open(UINT uDeviceId = WAVE_MAPPER, UINT nRate = 11025, WaveInProc pfnRecord = &Record) {
        const WAVEFORMATEX format{WAVE_FORMAT_PCM, 1, nRate, nRate * 2, 2, 16, 0};
        return waveInOpen(m_hWaveIn, uDeviceId, format, pfnRecord,
                          reinterpret_cast<std::uintptr_t>(&m_events), CALLBACK_FUNCTION);
    }
    Event Data(const WAVEHDR& header) const {
        return {m_hWaveIn, MM_WIM_DATA, reinterpret_cast<std::uintptr_t>(&header)};
    }

    CFakeWaveInScope m_fake;
    std::vector<Event> m_events;
    HWAVEIN m_hWaveIn = 77;
};

TEST_F(WaveIn, BuffersComeBackFullAndInOrderThenTheRestOnReset) {
    ASSERT_EQ(Open(), MMSYSERR_NOERROR);
    ASSERT_NE(m_hWaveIn, 0U);
    std::array<Buffer, 3> buffers{Buffer(4), Buffer(2), Buffer(4)};
    EXPECT_EQ(waveInAddBuffer(m_hWaveIn, buffers[0], HEADER_SIZE), WAVERR_UNPREPARED);
    for (Buffer& buffer : buffers) {
        ASSERT_EQ(waveInPrepareHeader(m_hWaveIn, buffer, HEADER_SIZE), MMSYSERR_NOERROR);
        ASSERT_EQ(waveInPrepareHeader(m_hWaveIn, buffer, HEADER_SIZE), MMSYSERR_NOERROR);
        ASSERT_EQ(waveInAddBuffer(m_hWaveIn, buffer, HEADER_SIZE), MMSYSERR_NOERROR);
    }
    EXPECT_EQ(waveInAddBuffer(m_hWaveIn, buffers[0], HEADER_SIZE), WAVERR_STILLPLAYING);
    const std::vector<std::int16_t> sound{1, -2, 3, -4, 5, -6, 7};
    m_fake->Feed(sound);
    EXPECT_THAT(m_events, ElementsAre(Event{m_hWaveIn, MM_WIM_OPEN, 0})) << "recorded before Start";
    ASSERT_EQ(waveInStart(m_hWaveIn), MMSYSERR_NOERROR);
    m_fake->Feed(sound);
    EXPECT_THAT(m_events, ElementsAre(Event{m_hWaveIn, MM_WIM_OPEN, 0}, Data(buffers[0]), Data(buffers[1])));
    EXPECT_THAT(buffers[0].samples, ElementsAre(1, -2, 3, -4));
    EXPECT_THAT(buffers[1].samples, ElementsAre(5, -6));
    EXPECT_EQ(buffers[0].dwBytesRecorded, 8U);
    EXPECT_EQ(buffers[0].dwFlags, WHDR_PREPARED | WHDR_DONE);

    EXPECT_EQ(waveInReset(m_hWaveIn), MMSYSERR_NOERROR);
    EXPECT_EQ(m_events.back(), Data(buffers[2]));
    EXPECT_EQ(buffers[2].dwBytesRecorded, 2U);
    m_fake->Feed(sound);
    EXPECT_EQ(m_events.size(), 4U);
    EXPECT_EQ(waveInClose(m_hWaveIn), MMSYSERR_NOERROR);
    EXPECT_EQ(m_events.back(), (Event{m_hWaveIn, MM_WIM_CLOSE, 0}));
    EXPECT_EQ(m_fake->GetOpenCount(), 0);
}

TEST_F(WaveIn, RefusalsLeaveNoHandle) {
    m_fake->SetDevices({{.strName = "A", .refusedRates = {11025}}});
    EXPECT_EQ(Open(0, 11025), WAVERR_BADFORMAT);
    EXPECT_EQ(m_hWaveIn, 0U);
    EXPECT_EQ(Open(1), MMSYSERR_BADDEVICEID);
    EXPECT_EQ(Open(0, 22050, nullptr), MMSYSERR_INVALPARAM);
    EXPECT_TRUE(m_events.empty());
    EXPECT_EQ(Open(0, 22050), MMSYSERR_NOERROR);
    const HWAVEIN hClosed = m_hWaveIn;
    EXPECT_EQ(waveInClose(hClosed), MMSYSERR_NOERROR);
    Buffer buffer(2);
    EXPECT_EQ(waveInClose(hClosed), MMSYSERR_INVALHANDLE);
    EXPECT_EQ(waveInStart(hClosed), MMSYSERR_INVALHANDLE);
    EXPECT_EQ(waveInPrepareHeader(hClosed, buffer, HEADER_SIZE), MMSYSERR_INVALHANDLE);
}

// However the sound is cut into pieces and the room into buffers, what comes out is the sound.
TEST(WaveInQueue, AnyPiecesGiveTheSameSound) {
    std::mt19937 random(20261122);
    const auto pick = [&](int nLow, int nHigh) {
        return static_cast<std::size_t>(std::uniform_int_distribution(nLow, nHigh)(random));
    };
    for (int nRound = 0; nRound < 200; ++nRound) {
        std::deque<Buffer> buffers;
        std::vector<std::int16_t> heard;
        CWaveInQueue queue([&](UINT, WAVEHDR* pHeader) {
            const auto* pnSamples = reinterpret_cast<const std::int16_t*>(pHeader->lpData);
            heard.insert(heard.end(), pnSamples, pnSamples + pHeader->dwBytesRecorded / 2);
        });
        std::size_t nRoom = 0;
        for (std::size_t nCount = pick(1, 20); nCount > 0; --nCount) {
            Buffer& buffer = buffers.emplace_back(pick(1, 50));
            nRoom += buffer.samples.size();
            buffer.dwFlags = WHDR_PREPARED;
            ASSERT_EQ(queue.Add(buffer), MMSYSERR_NOERROR);
        }
        std::vector<std::int16_t> sound;
        while (sound.size() < nRoom) {
            const std::size_t nBegin = sound.size();
            if (pick(0, 3) == 0) {
                sound.resize(nBegin + pick(1, 40), 0);
                queue.WriteSilence(sound.size() - nBegin);
            } else {
                for (std::size_t nPiece = pick(1, 40); nPiece > 0; --nPiece) {
                    sound.push_back(static_cast<std::int16_t>(pick(1, 30000)));
                }
                queue.Write(std::span(sound).subspan(nBegin));
            }
        }
        sound.resize(nRoom);
        ASSERT_EQ(heard, sound) << "round " << nRound;
    }
}

}  // namespace
