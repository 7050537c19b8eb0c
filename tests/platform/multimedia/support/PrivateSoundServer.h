#pragma once

#include "end_to_end/ChildProcess.h"

#include <string>
#include <vector>

// A sound server of the test's own, with one virtual microphone. This process finds it, and no other, through
// its environment. It ends with the object, and with the process in any case.
class CPrivateSoundServer {
public:
    CPrivateSoundServer() = default;
    ~CPrivateSoundServer();
    CPrivateSoundServer(const CPrivateSoundServer&) = delete;
    CPrivateSoundServer& operator=(const CPrivateSoundServer&) = delete;

    // strKind: "pulse" or "pipewire". After Stop or Kill it comes back at the same address.
    bool Start(const std::string& strKind);
    void Stop();
    void Kill() const { Signal(9); }
    void Freeze() const { Signal(19); }
    void Thaw() const { Signal(18); }
    // The environment of a machine without any server.
    void PretendThereIsNone() const;

    // A command of the server's control program.
    bool Control(const std::vector<std::string>& arguments) const;
    // A microphone that hears what is played to the sink strFeed. *pstrModule, if given, becomes the number
    // with which it can be unloaded.
    bool AddMicrophone(const std::string& strName, const std::string& strDescription,
                       const std::string& strFeed = "mic_feed", std::string* pstrModule = nullptr) const;
    bool AddFeed(const std::string& strName) const;
    bool RemoveMicrophones() const { return Control({"unload-module", "module-remap-source"}); }
    // A sine of half the full scale, for half a minute or until the next call.
    bool PlaySine(double fFrequency, const std::string& strFeed = "mic_feed");

private:
    void Signal(int nSignal) const;

    std::string m_strKind;
    CTemporaryDirectory m_directory;
    CChildProcess m_player;
    bool m_bStarted = false;
};
