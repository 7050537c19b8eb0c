#pragma once

#include "stage/ChildProcess.h"
#include "stage/DisplayReader.h"
#include "stage/Screen.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

// A private sound server without hardware: its microphone hears what is played to it here. It ends with the
// object, and with the process in any case.
class CSoundServer {
public:
    CSoundServer() = default;
    ~CSoundServer();
    CSoundServer(const CSoundServer&) = delete;
    CSoundServer& operator=(const CSoundServer&) = delete;

    // strKind: "pulse" or "pipewire".
    bool Start(const std::string& strKind = "pulse");
    void Stop();
    // What a program needs in its environment to find the server.
    const CChildProcess::Environment& GetEnvironment() const { return m_environment; }
    // Plays a WAV file into the microphone, from now on and beside the caller; a second call ends the first.
    bool PlayIntoMicrophone(const std::filesystem::path& waveFile) { return Play(waveFile, "mic_feed"); }
    bool Play(const std::filesystem::path& waveFile, const std::string& strSink);
    // To the server's own process: SIGSTOP freezes it.
    void SignalServer(int nSignal) const;
    void StopPlaying() { m_player.End(); }
    // A command of the server's control program; its output, or nothing if it failed.
    std::optional<std::string> Control(std::vector<std::string> arguments) const;
    const std::filesystem::path& GetDirectory() const { return m_directory.GetPath(); }

private:
    CTemporaryDirectory m_directory;
    CChildProcess::Environment m_environment;
    CChildProcess m_player;
    bool m_bStarted = false;
};

// The real program on a virtual screen, in a directory of its own with copies of the files that it needs.
class CStage {
public:
    // Starts screen and program; the sound server is the caller's, null for none at all.
    // The screen is as large as the window, so that it shows nothing else.
    bool Start(const CSoundServer* pSound, int nDotsPerInch = 96);
    // A larger screen with a window manager, so that dialogs have room and a minimised window comes back.
    bool StartOnDesktop(const CSoundServer* pSound);
    // What the program finds in its environment besides, from its next start on.
    void AddToEnvironment(const CChildProcess::Environment& more) { m_more.insert(more.begin(), more.end()); }
    // Starts the program again, on the same screen and in the same directory.
    bool StartProgram(const CSoundServer* pSound);

    // Where the window's client area lies on the screen, for Read; the corner until told.
    void LookAt(int x, int y) { m_xWindow = x, m_yWindow = y; }

    // The whole screen.
    std::optional<Picture> Grab() const { return m_screen.Grab(); }
    DisplayedReading Read() const;
    // Looks at the screen until what is read satisfies the condition; the last reading in any case.
    DisplayedReading ReadUntil(const std::function<bool(const DisplayedReading&)>& condition,
                               std::chrono::milliseconds timeout) const;
    // Whether it comes to satisfy the condition in time.
    bool ReadsSoon(const std::function<bool(const DisplayedReading&)>& condition,
                   std::chrono::milliseconds timeout) const {
        return condition(ReadUntil(condition, timeout));
    }
    // Looks until the condition holds for the picture itself.
    bool WaitForPicture(const std::function<bool(const Picture&)>& condition,
                        std::chrono::milliseconds timeout) const;

    // A key by its X name, to the window under the pointer.
    bool PressKey(const std::string& strKey) const;

    CChildProcess& GetProgram() { return m_program; }
    const std::filesystem::path& GetDirectory() const { return m_directory.GetPath(); }
    const CVirtualScreen& GetScreen() const { return m_screen; }
    std::string ReadFile(const std::string& strName) const;

private:
    bool FillDirectory();

    CChildProcess::Environment m_more;
    CTemporaryDirectory m_directory;
    CVirtualScreen m_screen;
    CChildProcess m_windowManager;
    CDisplayReader m_reader;
    CChildProcess m_program;
    int m_xWindow = 0;
    int m_yWindow = 0;
};
