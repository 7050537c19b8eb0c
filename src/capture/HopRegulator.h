#pragma once

// Settles the step between blocks where the machine just keeps up: the step shrinks while the capture has to
// wait for sound, and grows while sound has to wait for the capture.
class CHopRegulator {
public:
    // fHop: samples, not necessarily a whole number of them.
    explicit CHopRegulator(float fHop) : m_fHop(fHop) {}

    // No buffer was waiting.
    void OnIdle();
    // A buffer was waiting.
    void OnBusy();

    float GetHop() const { return m_fHop; }

private:
    void KeepAboveOne();

    float m_fHop;
    bool m_bHadData = false;
    int m_nIdleRun = 0;
};
