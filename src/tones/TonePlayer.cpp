#include "tones/TonePlayer.h"

#include "platform/base/Archive.h"
#include "platform/base/MemFile.h"

#include <algorithm>

namespace {

// The header, the first track with its tempo changes, and the second track's id.
constexpr std::array<BYTE, 171> TEMPLATE = {
    0x4D, 0x54, 0x68, 0x64, 0x00, 0x00, 0x00, 0x06, 0x00, 0x01, 0x00, 0x02, 0x00, 0x78,  // header, 120 ticks
    0x4D, 0x54, 0x72, 0x6B, 0x00, 0x00, 0x00, 0x91,                                      // track of 145 bytes
    0x00, 0xFF, 0x58, 0x04, 0x04, 0x02, 0x18, 0x08,                                      // 4/4
    0x00, 0xFF, 0x59, 0x02, 0x02, 0x00,                                                  // two sharps, major
    0x00, 0xFF, 0x51, 0x03, 0x12, 0x4F, 0x80,                                            // 1200000 us
    0x86, 0x48, 0xFF, 0x51, 0x03, 0x14, 0x58, 0x55,                                      // tick 840: 1333333
    0x78, 0xFF, 0x51, 0x03, 0x12, 0x4F, 0x80,                                            // tick 960
    0x86, 0x48, 0xFF, 0x51, 0x03, 0x14, 0x58, 0x55,                                      // tick 1800
    0x78, 0xFF, 0x51, 0x03, 0x12, 0x4F, 0x80,                                            // tick 1920
    0x86, 0x48, 0xFF, 0x51, 0x03, 0x14, 0x58, 0x55,                                      // tick 2760
    0x78, 0xFF, 0x51, 0x03, 0x12, 0x4F, 0x80,                                            // tick 2880
    0x95, 0x48, 0xFF, 0x51, 0x03, 0x16, 0xE3, 0x60,                                      // tick 5640: 1500000
    0x78, 0xFF, 0x51, 0x03, 0x12, 0x4F, 0x80,                                            // tick 5760
    0x95, 0x48, 0xFF, 0x51, 0x03, 0x14, 0x58, 0x55,                                      // tick 8520
    0x78, 0xFF, 0x51, 0x03, 0x12, 0x4F, 0x80,                                            // tick 8640
    0x8E, 0x08, 0xFF, 0x51, 0x03, 0x16, 0xE3, 0x60,                                      // tick 10440
    0x78, 0xFF, 0x51, 0x03, 0x12, 0x4F, 0x80,                                            // tick 10560
    0x95, 0x48, 0xFF, 0x51, 0x03, 0x14, 0x58, 0x55,                                      // tick 13320
    0x78, 0xFF, 0x51, 0x03, 0x12, 0x4F, 0x80,                                            // tick 13440
    0x8E, 0x08, 0xFF, 0x51, 0x03, 0x16, 0xE3, 0x60,                                      // tick 15240
    0x78, 0xFF, 0x51, 0x03, 0x0F, 0x42, 0x40,  // tick 15360: 1000000
    0x00, 0xFF, 0x2F, 0x00,                    // end of track
    0x4D, 0x54, 0x72, 0x6B};

constexpr BYTE NYLON_STRING_GUITAR = 0x18;
constexpr BYTE ONE_STRING_TRACK = 22;
constexpr BYTE ALL_STRINGS_TRACK = 52;
constexpr BYTE ONE_STRING_TICKS = 0x50;
constexpr BYTE ALL_STRINGS_TICKS = 0x12;

// Of the bend wheel, whose range is two semitones either way.
constexpr double SEMITONE = 4096.0;
constexpr int BEND_ONE_STRING = 8196;
constexpr int BEND_ALL_STRINGS = 4096;

// Semitones per Hz above and below 440, such that 450 and 430 Hz come out right.
constexpr float BEND_UP = 0.03878374F;
constexpr float BEND_DOWN = 0.039920162F;
constexpr float MIDDLE_A = 440.0F;

constexpr BYTE LOUDEST = 127;

BYTE VelocityOf(int nNote, BYTE velocity) {
    const int nSoftening = static_cast<int>(static_cast<double>(nNote) * 0.25);
    return std::min(static_cast<BYTE>(velocity - nSoftening + 55), LOUDEST);
}

}  // namespace

CTonePlayer::CTonePlayer() {
    std::copy(TEMPLATE.begin(), TEMPLATE.end(), m_image.begin());
}

void CTonePlayer::SetAFrequency(float hz) {
    const float fDifference = hz - MIDDLE_A;
    m_fBend = std::clamp(fDifference * (fDifference >= 0.0F ? BEND_UP : BEND_DOWN), -1.0F, 1.0F);
}

void CTonePlayer::PlayString(int note, BYTE velocity) {
    const auto nNote = static_cast<BYTE>(note);
    BeginTrack(ONE_STRING_TRACK, BEND_ONE_STRING);
    const std::array<BYTE, 7> tone = {0x00,  0x90, nNote, VelocityOf(note, velocity), ONE_STRING_TICKS,
                                      nNote, 0};
    Append(tone);
    Play();
}

void CTonePlayer::PlayAllStrings(int n1, int n2, int n3, int n4, int n5, int n6, BYTE velocity) {
    BeginTrack(ALL_STRINGS_TRACK, BEND_ALL_STRINGS);
    bool bFirst = true;
    for (const int note : {n1, n2, n3, n4, n5, n6}) {
        const auto nNote = static_cast<BYTE>(note);
        const std::array<BYTE, 7> tone = {0x00,  0x90, nNote, VelocityOf(note, velocity), ALL_STRINGS_TICKS,
                                          nNote, 0};
        // Only the first has a status of its own.
        if (bFirst) {
            Append(tone);
        } else {
            Append(std::span(tone).first(1));
            Append(std::span(tone).subspan(2));
        }
        bFirst = false;
    }
    Play();
}

void CTonePlayer::BeginTrack(BYTE nLength, int nBend) {
    const int nValue = nBend + static_cast<int>(static_cast<double>(m_fBend) * SEMITONE);
    const std::array<BYTE, 11> head = {0,
                                       0,
                                       0,
                                       nLength,
                                       0x00,
                                       0xC0,
                                       NYLON_STRING_GUITAR,
                                       0x00,
                                       0xE0,
                                       static_cast<BYTE>(nValue & 0x7F),
                                       static_cast<BYTE>(nValue >> 7)};
    m_nImageBytes = TEMPLATE.size();
    Append(head);
}

void CTonePlayer::Append(std::span<const BYTE> bytes) {
    std::copy(bytes.begin(), bytes.end(), m_image.begin() + static_cast<std::ptrdiff_t>(m_nImageBytes));
    m_nImageBytes += bytes.size();
}

void CTonePlayer::Play() {
    constexpr std::array<BYTE, 8> tail = {0x00, 0xB0, 0xF8, 0x00, 0x00, 0xFF, 0x2F, 0x00};
    Append(tail);
    m_sequencer.StopTimer();
    m_sequencer.Close();
    m_song.Clear();
    CMemFile file{std::span<BYTE>(m_image).first(m_nImageBytes)};
    CArchive archive(file, CArchive::Mode::Load);
    m_song.Serialize(archive);
    m_sequencer.Open(m_song);
    m_sequencer.StartTimer();
}
