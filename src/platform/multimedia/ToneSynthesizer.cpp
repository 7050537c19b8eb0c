#include "platform/multimedia/ToneSynthesizer.h"

#include "platform/multimedia/PitchTrack.h"
#include "platform/multimedia/ShortMessage.h"
#include "platform/multimedia/StretchedSound.h"

#include <fluidsynth.h>

#include <algorithm>
#include <cmath>

namespace {

// A note has one to itself until so many others have begun: longer than it takes to die away.
constexpr std::size_t VOICES = 4;
constexpr int GUITAR = 24;
constexpr int DRUM_BANK = 128;
constexpr int FIRST_KEY = 36;
constexpr int LAST_KEY = 72;
constexpr int MEASURED_VELOCITY = 127;
constexpr double MEASURED_SECONDS = 0.9;
// The stretching is set anew for each piece.
constexpr std::size_t PIECE_FRAMES = 128;
constexpr int BEND_MIDDLE = 8192;
constexpr double CENTS_OF_FULL_BEND = 200.0;
// What the synthesizer makes of it: a range of 2 out of 128 and not out of 127 parts of 12700 cents.
constexpr double CENTS_OF_ITS_FULL_BEND = 12700.0 * 2.0 / 128.0;
constexpr int POLYPHONY = 64;
// Loud enough, and far enough from clipping.
constexpr double GAIN = 0.6;
constexpr std::size_t FADE_FRAMES = 256;
constexpr int ADVANCE_FRAMES = 64;
constexpr double CENTS_PER_KEY = 100.0;
constexpr double CENTS_OF_OCTAVE = 1200.0;
constexpr int A_KEY = 69;
constexpr double A_FREQUENCY = 440.0;
// In the middle of the cent that the synthesizer cuts to: rounding can't tip it over.
constexpr double MIDDLE_OF_CENT = 0.5;
constexpr float INAUDIBLE = 1e-5F;
constexpr int TUNING_BANK = 0;
constexpr int TUNING_PROGRAM = 0;

double FrequencyOf(int nKey) {
    return A_FREQUENCY * std::exp2(static_cast<double>(nKey - A_KEY) / 12.0);
}

void SilenceLog() {
    for (const int nLevel : {FLUID_PANIC, FLUID_ERR, FLUID_WARN, FLUID_INFO, FLUID_DBG}) {
        fluid_set_log_function(
            nLevel, [](int, const char*, void*) {}, nullptr);
    }
}

struct SettingsDeleter {
    void operator()(fluid_settings_t* pSettings) const { delete_fluid_settings(pSettings); }
};
struct SynthDeleter {
    void operator()(fluid_synth_t* pSynth) const { delete_fluid_synth(pSynth); }
};

}  // namespace

// One synthesizer, and how the sound of its latest note is stretched.
struct CToneSynthesizer::Voice {
    std::unique_ptr<fluid_settings_t, SettingsDeleter> pSettings;
    std::unique_ptr<fluid_synth_t, SynthDeleter> pSynth;
    CStretchedSound sound{[this](std::span<float> stereo) {
        fluid_synth_write_float(pSynth.get(), static_cast<int>(stereo.size() / 2), stereo.data(), 0, 2,
                                stereo.data(), 1, 2);
    }};
    const std::vector<float>* pTrack = nullptr;  // none for a note whose pitch is believed
    double dCentsMissing = 0.0;                  // from the whole cent that it is tuned to
    double dNoteStart = 0.0;                     // in frames of the sound

    bool Load(const std::string& strSoundFont) {
        pSettings.reset(new_fluid_settings());
        fluid_settings_t* const p = pSettings.get();
        fluid_settings_setnum(p, "synth.sample-rate", SYNTHESIZER_RATE);
        fluid_settings_setint(p, "synth.dynamic-sample-loading", 1);
        fluid_settings_setint(p, "synth.reverb.active", 0);
        fluid_settings_setint(p, "synth.chorus.active", 0);
        fluid_settings_setint(p, "synth.lock-memory", 0);
        fluid_settings_setint(p, "synth.polyphony", POLYPHONY);
        fluid_settings_setnum(p, "synth.gain", GAIN);
        pSynth.reset(new_fluid_synth(p));
        std::array<double, KEYS> pitches{};
        for (std::size_t nKey = 0; nKey < KEYS; ++nKey) {
            pitches[nKey] = CENTS_PER_KEY * static_cast<double>(nKey) + MIDDLE_OF_CENT;
        }
        const int nFont = pSynth ? fluid_synth_sfload(pSynth.get(), strSoundFont.c_str(), 1) : FLUID_FAILED;
        if (nFont == FLUID_FAILED) {
            return false;
        }
        // The samples of the guitar stay, and of what a reset chooses: no message reads the file.
        fluid_synth_pin_preset(pSynth.get(), nFont, 0, GUITAR);
        fluid_synth_pin_preset(pSynth.get(), nFont, 0, 0);
        fluid_synth_pin_preset(pSynth.get(), nFont, DRUM_BANK, 0);
        return fluid_synth_activate_key_tuning(pSynth.get(), TUNING_BANK, TUNING_PROGRAM, "", pitches.data(),
                                               0) == FLUID_OK;
    }
    // The cents, counted from key 0, at which the key's next note sounds before any bend.
    void Tune(int nChannel, int nKey, double dCents) const {
        fluid_synth_tune_notes(pSynth.get(), TUNING_BANK, TUNING_PROGRAM, 1, &nKey, &dCents, 0);
        fluid_synth_activate_tuning(pSynth.get(), nChannel, TUNING_BANK, TUNING_PROGRAM, 0);
    }
    // What the sample is off by where it is heard next, in cents.
    double Deviation() const {
        if (pTrack == nullptr || pTrack->empty()) {
            return 0.0;
        }
        const double dSeconds = std::max(0.0, sound.GetPosition() - dNoteStart) / SYNTHESIZER_RATE;
        const double dPlace = dSeconds / PITCH_TRACK_STEP;
        const auto nLast = pTrack->size() - 1;
        if (dPlace >= static_cast<double>(nLast)) {
            return static_cast<double>(pTrack->back());
        }
        const auto nPlace = static_cast<std::size_t>(dPlace);
        return std::lerp(static_cast<double>((*pTrack)[nPlace]), static_cast<double>((*pTrack)[nPlace + 1]),
                         dPlace - static_cast<double>(nPlace));
    }
    // The reset of the synthesizer alone lets notes die away, and it renders some frames in advance.
    void Reset() {
        fluid_synth_system_reset(pSynth.get());
        fluid_synth_all_sounds_off(pSynth.get(), -1);
        std::array<float, std::size_t{2} * ADVANCE_FRAMES> forgotten{};
        fluid_synth_write_float(pSynth.get(), ADVANCE_FRAMES, forgotten.data(), 0, 2, forgotten.data(), 1, 2);
        sound.Forget();
    }
    void AddTo(std::span<float> stereo) {
        sound.AddTo(stereo, std::exp2((dCentsMissing - Deviation()) / CENTS_OF_OCTAVE));
    }
};

CToneSynthesizer::CToneSynthesizer() {
    m_bends.fill(BEND_MIDDLE);
}

CToneSynthesizer::~CToneSynthesizer() = default;

std::unique_ptr<CToneSynthesizer> CToneSynthesizer::Load(const std::string& strSoundFont) {
    SilenceLog();
    std::unique_ptr<CToneSynthesizer> pSynthesizer(new CToneSynthesizer);
    for (std::size_t i = 0; i < VOICES; ++i) {
        pSynthesizer->m_voices.push_back(std::make_unique<Voice>());
        if (!pSynthesizer->m_voices.back()->Load(strSoundFont)) {
            return nullptr;
        }
        // The samples are there before the first note is asked for.
        fluid_synth_program_change(pSynthesizer->m_voices.back()->pSynth.get(), 0, GUITAR);
    }
    pSynthesizer->MeasureTracks();
    return pSynthesizer;
}

void CToneSynthesizer::MeasureTracks() {
    Voice& voice = *m_voices.front();
    fluid_synth_t* const pSynth = voice.pSynth.get();
    std::vector<float> left(static_cast<std::size_t>(MEASURED_SECONDS * SYNTHESIZER_RATE));
    std::vector<float> right(left.size());
    for (int nKey = FIRST_KEY; nKey <= LAST_KEY; ++nKey) {
        voice.Reset();
        fluid_synth_program_change(pSynth, 0, GUITAR);
        voice.Tune(0, nKey, CENTS_PER_KEY * nKey + MIDDLE_OF_CENT);
        fluid_synth_noteon(pSynth, 0, nKey, MEASURED_VELOCITY);
        fluid_synth_write_float(pSynth, static_cast<int>(left.size()), left.data(), 0, 1, right.data(), 0, 1);
        m_tracks[static_cast<std::size_t>(nKey)] = TrackPitch(left, SYNTHESIZER_RATE, FrequencyOf(nKey));
    }
    Reset();
}

void CToneSynthesizer::ShortMsg(DWORD dwMessage) {
    if (ShortMessageLength(dwMessage) == 0) {
        return;
    }
    const auto bytes = BytesOf(dwMessage);
    const auto nChannel = static_cast<std::size_t>(bytes[0] & 0x0F);
    const int nFluidChannel = bytes[0] & 0x0F;
    const int nFirst = bytes[1];
    const int nSecond = bytes[2];
    if (bytes[0] == 0xFF) {
        Reset();
        return;
    }
    switch (bytes[0] & 0xF0) {
        case 0x80:
            NoteOff(nChannel, nFirst);
            return;
        case 0x90:
            if (nSecond == 0) {
                NoteOff(nChannel, nFirst);
            } else {
                NoteOn(nChannel, nFirst, nSecond);
            }
            return;
        case 0xC0:
            m_programs[nChannel] = nFirst;
            break;
        case 0xE0:
            m_bends[nChannel] = nSecond << 7 | nFirst;
            break;
        default:
            break;
    }
    for (const auto& pVoice : m_voices) {
        fluid_synth_t* const pSynth = pVoice->pSynth.get();
        switch (bytes[0] & 0xF0) {
            case 0xA0:
                fluid_synth_key_pressure(pSynth, nFluidChannel, nFirst, nSecond);
                break;
            case 0xB0:
                fluid_synth_cc(pSynth, nFluidChannel, nFirst, nSecond);
                break;
            case 0xC0:
                fluid_synth_program_change(pSynth, nFluidChannel, nFirst);
                break;
            case 0xD0:
                fluid_synth_channel_pressure(pSynth, nFluidChannel, nFirst);
                break;
            case 0xE0:
                fluid_synth_pitch_bend(pSynth, nFluidChannel, nSecond << 7 | nFirst);
                break;
            default:
                break;
        }
    }
}

void CToneSynthesizer::NoteOn(std::size_t nChannel, int nKey, int nVelocity) {
    NoteOff(nChannel, nKey);
    const double dTurn =
        static_cast<double>(m_bends[nChannel] - BEND_MIDDLE) / static_cast<double>(BEND_MIDDLE);
    const double dBend = CENTS_OF_FULL_BEND * dTurn;
    const double dWhole = std::floor(dBend);
    Voice& voice = *m_voices[m_nNextVoice];
    m_playedBy[nChannel][static_cast<std::size_t>(nKey)] = static_cast<BYTE>(m_nNextVoice);
    m_nNextVoice = (m_nNextVoice + 1) % m_voices.size();
    voice.pTrack = m_programs[nChannel] == GUITAR ? &m_tracks[static_cast<std::size_t>(nKey)] : nullptr;
    voice.dCentsMissing = dBend - dWhole;
    voice.dNoteStart = static_cast<double>(voice.sound.GetAskedFor());
    // The bend of the synthesizer's own is taken off again.
    voice.Tune(static_cast<int>(nChannel), nKey,
               CENTS_PER_KEY * nKey + dWhole + MIDDLE_OF_CENT - CENTS_OF_ITS_FULL_BEND * dTurn);
    fluid_synth_noteon(voice.pSynth.get(), static_cast<int>(nChannel), nKey, nVelocity);
}

void CToneSynthesizer::NoteOff(std::size_t nChannel, int nKey) {
    const Voice& voice = *m_voices[m_playedBy[nChannel][static_cast<std::size_t>(nKey)]];
    fluid_synth_noteoff(voice.pSynth.get(), static_cast<int>(nChannel), nKey);
}

void CToneSynthesizer::Reset() {
    if (!m_bSilent) {
        m_tail.resize(2 * FADE_FRAMES);
        AddVoices(m_tail);
        for (std::size_t i = 0; i < m_tail.size(); ++i) {
            const std::size_t nFrame = i / 2;
            m_tail[i] *= 1.0F - static_cast<float>(nFrame) / static_cast<float>(FADE_FRAMES);
        }
    }
    m_bends.fill(BEND_MIDDLE);
    m_programs.fill(0);
    for (const auto& pVoice : m_voices) {
        pVoice->Reset();
    }
}

void CToneSynthesizer::AddVoices(std::span<float> stereo) {
    for (std::size_t n = 0; n < stereo.size(); n += 2 * PIECE_FRAMES) {
        const auto piece = stereo.subspan(n, std::min(2 * PIECE_FRAMES, stereo.size() - n));
        for (const auto& pVoice : m_voices) {
            pVoice->AddTo(piece);
        }
    }
}

void CToneSynthesizer::Render(std::span<float> stereo) {
    const std::size_t nTail = std::min(m_tail.size(), stereo.size());
    const auto tailEnd = m_tail.begin() + static_cast<std::ptrdiff_t>(nTail);
    std::fill(std::copy(m_tail.begin(), tailEnd, stereo.begin()), stereo.end(), 0.0F);
    m_tail.erase(m_tail.begin(), tailEnd);
    AddVoices(stereo);
    m_bSilent = m_tail.empty() &&
                std::all_of(stereo.begin(), stereo.end(), [](float f) { return std::fabs(f) < INAUDIBLE; });
}
