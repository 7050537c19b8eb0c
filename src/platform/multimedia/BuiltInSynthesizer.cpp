#include "platform/multimedia/BuiltInSynthesizer.h"

#include "platform/multimedia/PulsePlayback.h"
#include "platform/multimedia/ShortMessage.h"
#include "platform/multimedia/ToneSynthesizer.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace {

constexpr DWORD SYSTEM_RESET = 0xFF;
constexpr DWORD FULL_VOLUME = 0xFFFFFFFF;
constexpr float LOUDEST_WORD = 65535.0F;
// More waits only where nothing will ever sound.
constexpr std::size_t MOST_WAITING = 1024;
// Messages get a turn between pieces of so many frames.
constexpr std::size_t PIECE_FRAMES = 256;
// For what still sounds at the end of the program to fade out.
constexpr std::chrono::milliseconds LONGEST_DRAIN{200};

// The synthesizer and its stream to the sound server, from before it is loaded to the end of the program. The
// stream stands from the first opening on, whether the device is open or not: so a tone that follows another
// is heard at once.
class CSynthesizerHost {
public:
    explicit CSynthesizerHost(std::vector<std::string> soundFonts) : m_soundFonts(std::move(soundFonts)) {}
    ~CSynthesizerHost() {
        m_bEnding = true;
        if (m_loader.joinable()) {
            m_loader.join();
        }
        if (m_pPlayback) {
            Silence();
            m_pPlayback->Drain(LONGEST_DRAIN);
            m_pPlayback.reset();
        }
    }
    CSynthesizerHost(const CSynthesizerHost&) = delete;
    CSynthesizerHost& operator=(const CSynthesizerHost&) = delete;

    void Prepare() {
        const std::lock_guard lock(m_mutex);
        if (m_bAsked) {
            return;
        }
        m_bAsked = true;
        try {
            m_loader = std::thread([this] { Load(); });
        } catch (const std::system_error&) {
            m_bFailed = true;
        }
    }
    // False while it is open already, or when it can't sound.
    bool Acquire() {
        Prepare();
        {
            const std::lock_guard lock(m_mutex);
            if (m_bFailed || std::exchange(m_bInUse, true)) {
                return false;
            }
        }
        const std::lock_guard lock(m_playbackMutex);
        if (!m_pPlayback || !m_pPlayback->IsUsable()) {
            m_pPlayback.reset();
            m_pPlayback = std::make_unique<CPulsePlayback>(
                SYNTHESIZER_RATE, CPulsePlayback::Source{[this](std::span<float> stereo) { Render(stereo); },
                                                         [this] { return IsSilent(); }});
        }
        return true;
    }
    void Release() {
        Silence();
        const std::lock_guard lock(m_mutex);
        m_bInUse = false;
    }
    void ShortMsg(DWORD dwMessage) {
        {
            const std::lock_guard lock(m_mutex);
            if (m_pSynthesizer) {
                m_pSynthesizer->ShortMsg(dwMessage);
            } else if (m_waiting.size() < MOST_WAITING) {
                m_waiting.push_back(dwMessage);
            }
        }
        const std::lock_guard lock(m_playbackMutex);
        m_pPlayback->Wake();
    }
    DWORD GetVolume() const { return m_dwVolume; }
    void SetVolume(DWORD dwVolume) { m_dwVolume = dwVolume; }

private:
    void Silence() {
        const std::lock_guard lock(m_mutex);
        m_waiting.clear();
        if (m_pSynthesizer) {
            m_pSynthesizer->ShortMsg(SYSTEM_RESET);
        }
    }
    void Render(std::span<float> stereo) {
        while (!stereo.empty()) {
            const auto piece = stereo.first(std::min(stereo.size(), 2 * PIECE_FRAMES));
            RenderPiece(piece);
            stereo = stereo.subspan(piece.size());
        }
    }
    bool IsSilent() {
        const std::lock_guard lock(m_mutex);
        return m_waiting.empty() && (!m_pSynthesizer || m_pSynthesizer->IsSilent());
    }
    // Null also where memory ran out on the way.
    static std::unique_ptr<CToneSynthesizer> LoadFont(const std::string& strSoundFont) {
        try {
            return CToneSynthesizer::Load(strSoundFont);
        } catch (const std::exception&) {
            return nullptr;
        }
    }
    void Load() {
        std::unique_ptr<CToneSynthesizer> pSynthesizer;
        for (const std::string& strSoundFont : m_soundFonts) {
            if (pSynthesizer || m_bEnding) {
                break;
            }
            pSynthesizer = LoadFont(strSoundFont);
        }
        const std::lock_guard lock(m_mutex);
        m_pSynthesizer = std::move(pSynthesizer);
        m_bFailed = !m_pSynthesizer;
        if (m_pSynthesizer) {
            for (const DWORD dwMessage : m_waiting) {
                m_pSynthesizer->ShortMsg(dwMessage);
            }
        }
        m_waiting.clear();
    }
    void RenderPiece(std::span<float> stereo) {
        {
            const std::lock_guard lock(m_mutex);
            if (m_pSynthesizer) {
                m_pSynthesizer->Render(stereo);
            } else {
                std::fill(stereo.begin(), stereo.end(), 0.0F);
            }
        }
        const DWORD dwVolume = m_dwVolume;
        if (dwVolume == FULL_VOLUME) {
            return;
        }
        const float fLeft = static_cast<float>(dwVolume & 0xFFFF) / LOUDEST_WORD;
        const float fRight = static_cast<float>(dwVolume >> 16) / LOUDEST_WORD;
        for (std::size_t i = 0; i + 1 < stereo.size(); i += 2) {
            stereo[i] *= fLeft;
            stereo[i + 1] *= fRight;
        }
    }

    const std::vector<std::string> m_soundFonts;
    std::mutex m_mutex;  // held for one message or one piece of sound, and the stream's thread takes it
    std::thread m_loader;
    bool m_bAsked = false;
    bool m_bFailed = false;
    bool m_bInUse = false;
    std::vector<DWORD> m_waiting;  // until it is loaded
    std::unique_ptr<CToneSynthesizer> m_pSynthesizer;
    std::atomic<DWORD> m_dwVolume = FULL_VOLUME;
    std::atomic<bool> m_bEnding = false;
    std::mutex m_playbackMutex;  // the stream's thread never takes it
    std::unique_ptr<CPulsePlayback> m_pPlayback;
};

class CSynthesizerPort final : public IMidiOutPort {
public:
    explicit CSynthesizerPort(std::shared_ptr<CSynthesizerHost> pHost) : m_pHost(std::move(pHost)) {}
    ~CSynthesizerPort() override { LetGo(); }

    MMRESULT ShortMsg(DWORD dwMessage) override {
        if (ShortMessageLength(dwMessage) == 0) {
            return MMSYSERR_INVALPARAM;
        }
        const std::lock_guard lock(m_mutex);
        if (!m_bOpen) {
            return MMSYSERR_INVALHANDLE;
        }
        m_pHost->ShortMsg(dwMessage);
        return MMSYSERR_NOERROR;
    }
    MMRESULT GetVolume(DWORD& dwVolume) override {
        dwVolume = m_pHost->GetVolume();
        return MMSYSERR_NOERROR;
    }
    MMRESULT SetVolume(DWORD dwVolume) override {
        m_pHost->SetVolume(dwVolume);
        return MMSYSERR_NOERROR;
    }
    // What sounds fades out at once, beside the caller.
    MMRESULT Close() override {
        LetGo();
        return MMSYSERR_NOERROR;
    }

private:
    void LetGo() {
        const std::lock_guard lock(m_mutex);
        if (std::exchange(m_bOpen, false)) {
            m_pHost->Release();
        }
    }

    const std::shared_ptr<CSynthesizerHost> m_pHost;
    std::mutex m_mutex;
    bool m_bOpen = true;
};

class CBuiltInSynthesizer final : public IMidiOutBackend {
public:
    explicit CBuiltInSynthesizer(std::vector<std::string> soundFonts)
        : m_pHost(std::make_shared<CSynthesizerHost>(std::move(soundFonts))) {}

    void Prepare() override { m_pHost->Prepare(); }
    UINT GetNumDevs() override { return 1; }
    MMRESULT GetDevCaps(UINT uDeviceId, MIDIOUTCAPS& caps) override {
        if (uDeviceId != 0) {
            return MMSYSERR_BADDEVICEID;
        }
        constexpr WORD nVoices = 64;
        caps = {0x0100, "Fretvane Synthesizer", MOD_SYNTH, nVoices, nVoices};
        return MMSYSERR_NOERROR;
    }
    MMRESULT Open(UINT uDeviceId, std::shared_ptr<IMidiOutPort>& pPort) override {
        if (uDeviceId != 0) {
            return MMSYSERR_BADDEVICEID;
        }
        if (!m_pHost->Acquire()) {
            return MMSYSERR_NODRIVER;
        }
        pPort = std::make_shared<CSynthesizerPort>(m_pHost);
        return MMSYSERR_NOERROR;
    }

private:
    std::shared_ptr<CSynthesizerHost> m_pHost;
};

}  // namespace

std::vector<std::string> DefaultSoundFonts() {
    return {"/usr/share/sounds/sf2/TimGM6mb.sf2", "/usr/share/soundfonts/TimGM6mb.sf2",
            "/usr/share/sounds/sf2/FluidR3_GM.sf2", "/usr/share/soundfonts/FluidR3_GM.sf2"};
}

std::shared_ptr<IMidiOutBackend> MakeBuiltInSynthesizer(std::vector<std::string> soundFonts) {
    return std::make_shared<CBuiltInSynthesizer>(std::move(soundFonts));
}
