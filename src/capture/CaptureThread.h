#pragma once

#include "platform/threads/Event.h"
#include "platform/threads/WinThread.h"

#include <atomic>
#include <memory>

// Called on the capture thread for each block, with the argument that was given with it. No other block is
// made and no buffer goes back to the device until it returns.
using BlockCallback = void (*)(void* pArg);

// How far a capture has come with its device.
enum class CaptureOpening {
    Pending,  // the thread has not settled it yet
    Open,     // the device records
    Failed    // there is no capture: none was started, or no memory, or the device refused
};

// What the owner and one capture thread share. An abandoned thread keeps it after the owner has gone.
// The owner writes the values without a lock only while no thread runs.
struct CaptureControl {
    std::atomic<bool> m_bRunning = false;
    std::atomic<bool> m_bAdaptHop = false;
    std::atomic<bool> m_bPaused = false;
    int m_nDevice = 0;  // 0 is the system's preferred device, n the device with the number n - 1
    int m_nSampleRate = 11025;
    int m_nBufferCount = 40;
    int m_nBufferSamples = 1024;
    int m_nBlockSamples = 1024;
    std::atomic<int> m_nHop = 128;
    BlockCallback m_pfnBlockReady = nullptr;
    void* m_pBlockReadyArg = nullptr;
    float* m_pfDest = nullptr;  // not owned, at least m_nBlockSamples floats

    // Who may use the destination and the callback. The thread enters before it writes a block and leaves
    // after the callback; an owner that abandons the thread shuts it out, or learns that it is inside.
    enum class Client { Free, Inside, ShutOut };
    std::atomic<Client> m_client = Client::Free;

    std::atomic<CaptureOpening> m_opening = CaptureOpening::Failed;
    CEvent m_opened;  // set once, when m_opening leaves Pending
};

// Starts and stops the thread that turns a recording device into overlapping blocks of samples.
//
// Call the setters, then Start; a true result says only that the thread runs. WaitUntilOpen then says what
// became of the device. After Failed, ClearFailed makes room for the next Start. Everything is called by one
// thread, the owner's, but GetHop, which the block callback may call too. SetAdaptHop and SetPaused act on a
// running capture, the other setters on the next one.
class CCaptureThread {
public:
    CCaptureThread();
    // Stops the capture if it runs.
    ~CCaptureThread();
    CCaptureThread(const CCaptureThread&) = delete;
    CCaptureThread& operator=(const CCaptureThread&) = delete;

    void SetDevice(int nDevice);
    void SetSampleRate(int nSampleRate);
    void SetBufferSamples(int nBufferSamples);
    void SetBlockSamples(int nBlockSamples);
    // Samples between the starts of neighbouring blocks. Start keeps it within 1 and the length of the ring.
    void SetHop(int nHop);
    // Where a block goes: raw values of 16-bit samples, in time order. Must stay until Stop.
    void SetDestination(float* pfDest);
    void SetBlockCallback(BlockCallback pfnBlockReady, void* pArg);
    void SetAdaptHop(bool bAdaptHop);
    void SetPaused(bool bPaused);

    bool IsRunning() const;
    // The step that led to the present block, in whole samples; the regulator's value while that is on.
    int GetHop() const;

    // Stops a running capture and starts a new one. False when there is no room for a thread, when a
    // thread that failed has not been cleared away, and always once IsClientHeld.
    bool Start();
    // Waits, bounded, until the thread has settled whether the device is open. Pending when the time runs
    // out.
    CaptureOpening WaitUntilOpen(int nMilliseconds);
    // Clears away a thread that has ended by itself because its device could not be opened. Does nothing to a
    // running one, nor to a failed one that has not come to its end within a second: it may be called again.
    void ClearFailed();
    // Always true. Returns when the thread has ended, which takes no longer than the block callback and the
    // device's closing; in the worst case, after 20 ms for each sample of (hop + 500), it abandons the
    // thread.
    bool Stop();
    // True when a thread had to be abandoned inside the block callback: what the callback and the destination
    // stand for must then stay for the rest of the process. An abandoned thread that is anywhere else never
    // comes to them again.
    bool IsClientHeld() const;

private:
    void Abandon();

    std::shared_ptr<CaptureControl> m_pControl;
    std::unique_ptr<CWinThread> m_pThread;
    bool m_bClientHeld = false;
};

// What the capture thread runs, from opening the device to closing it. The results are its exit codes.
inline constexpr int CAPTURE_STOPPED = -3;
inline constexpr int CAPTURE_FAILED = -1;
int CaptureThreadProc(CaptureControl& control);
