#pragma once

#include "platform/base/Types.h"
#include "platform/multimedia/MmResult.h"

#include <cstdint>

// Recording of PCM sound: handles, queued buffers, a callback. What stands behind it is the current
// IWaveInBackend (WaveInBackend.h).
//
// Every function gives a result code and may be called from any thread, except that none may be called from
// inside the callback, and none with a handle that another thread is closing.

inline constexpr MMRESULT WAVERR_BADFORMAT = 32;
inline constexpr MMRESULT WAVERR_STILLPLAYING = 33;
inline constexpr MMRESULT WAVERR_UNPREPARED = 34;

// The device id of the system's preferred device.
inline constexpr UINT WAVE_MAPPER = 0xFFFFFFFF;

inline constexpr WORD WAVE_FORMAT_PCM = 1;
inline constexpr DWORD CALLBACK_FUNCTION = 0x30000;

// Messages of the callback: the device is open, closed, or gives a buffer back (its header is dwParam1).
inline constexpr UINT MM_WIM_OPEN = 0x3BE;
inline constexpr UINT MM_WIM_CLOSE = 0x3BF;
inline constexpr UINT MM_WIM_DATA = 0x3C0;

// Bits of WAVEHDR::dwFlags.
inline constexpr DWORD WHDR_DONE = 0x1;
inline constexpr DWORD WHDR_PREPARED = 0x2;
inline constexpr DWORD WHDR_INQUEUE = 0x10;

// Bits of WAVEINCAPS::dwFormats: 1 is 11.025 kHz, 2 is 22.05 kHz, 4 is 44.1 kHz; M mono, S stereo; the bits
// of a sample.
inline constexpr DWORD WAVE_FORMAT_1M08 = 0x1;
inline constexpr DWORD WAVE_FORMAT_1S08 = 0x2;
inline constexpr DWORD WAVE_FORMAT_1M16 = 0x4;
inline constexpr DWORD WAVE_FORMAT_1S16 = 0x8;
inline constexpr DWORD WAVE_FORMAT_2M08 = 0x10;
inline constexpr DWORD WAVE_FORMAT_2S08 = 0x20;
inline constexpr DWORD WAVE_FORMAT_2M16 = 0x40;
inline constexpr DWORD WAVE_FORMAT_2S16 = 0x80;
inline constexpr DWORD WAVE_FORMAT_4M08 = 0x100;
inline constexpr DWORD WAVE_FORMAT_4S08 = 0x200;
inline constexpr DWORD WAVE_FORMAT_4M16 = 0x400;
inline constexpr DWORD WAVE_FORMAT_4S16 = 0x800;

#pragma pack(push, 2)
// A sample format, in the 18 bytes that stand in the header of a wave file.
struct WAVEFORMATEX {
    WORD wFormatTag = 0;
    WORD nChannels = 0;
    DWORD nSamplesPerSec = 0;
    DWORD nAvgBytesPerSec = 0;
    WORD nBlockAlign = 0;
    WORD wBitsPerSample = 0;
    WORD cbSize = 0;
};
#pragma pack(pop)
static_assert(sizeof(WAVEFORMATEX) == 18);

// A buffer's header. From waveInAddBuffer until it is given back, header and sample memory belong to the
// device.
struct WAVEHDR {
    char* lpData = nullptr;
    DWORD dwBufferLength = 0;   // bytes at lpData
    DWORD dwBytesRecorded = 0;  // bytes that hold sound, once the buffer has been given back
    std::uintptr_t dwUser = 0;
    DWORD dwFlags = 0;
    DWORD dwLoops = 0;
    WAVEHDR* lpNext = nullptr;
    std::uintptr_t reserved = 0;
};

struct WAVEINCAPS {
    UINT vDriverVersion = 0;  // major version in the high byte of the low word, minor in the low byte
    CString szPname;          // the name that the user knows the device by
    DWORD dwFormats = 0;
    WORD wChannels = 0;
    // Names the device in every list that holds it; empty where the sound system has no such name.
    CString strKey;
};

// A recording handle; 0 is none.
using HWAVEIN = std::uintptr_t;

// Runs on a thread of the backend. It may set an event and count, no more.
using WaveInProc = void (*)(HWAVEIN hWaveIn, UINT uMessage, std::uintptr_t dwInstance,
                            std::uintptr_t dwParam1, std::uintptr_t dwParam2);

// How many devices there are beside the preferred one. This call takes the list anew: device numbers of
// waveInGetDevCapsA and waveInOpen mean the devices of the latest list, whatever has come or gone since.
UINT waveInGetNumDevs();
// WAVE_MAPPER tells of the device that was preferred when the list was taken.
MMRESULT waveInGetDevCapsA(UINT uDeviceId, WAVEINCAPS& caps);
// Opens a device; the only kind of callback is CALLBACK_FUNCTION. On failure hWaveIn is 0.
MMRESULT waveInOpen(HWAVEIN& hWaveIn, UINT uDeviceId, const WAVEFORMATEX& format, WaveInProc pfnCallback,
                    std::uintptr_t dwInstance, DWORD dwFlags);
// Marks a buffer as usable; a buffer that is prepared already stays so.
MMRESULT waveInPrepareHeader(HWAVEIN hWaveIn, WAVEHDR& header, UINT uSize);
// Queues a prepared buffer. Buffers are filled whole and given back in the order in which they were queued.
MMRESULT waveInAddBuffer(HWAVEIN hWaveIn, WAVEHDR& header, UINT uSize);
MMRESULT waveInStart(HWAVEIN hWaveIn);
MMRESULT waveInStop(HWAVEIN hWaveIn);
// Stops and gives every queued buffer back, filled or not.
MMRESULT waveInReset(HWAVEIN hWaveIn);
// Gives back what is still queued and lets the device go, at once, whatever state it is in. When it returns
// no callback runs and none will.
MMRESULT waveInClose(HWAVEIN hWaveIn);
