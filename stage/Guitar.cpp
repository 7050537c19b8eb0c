#include "stage/Guitar.h"

#include <fluidsynth.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <memory>
#include <numbers>

namespace {

constexpr const char* SOUND_FONT = "/usr/share/sounds/sf2/TimGM6mb.sf2";
constexpr int STEEL_STRING_GUITAR = 25;  // General MIDI program, counted from 0

template <class Type, void (*pfnDelete)(Type*)>
struct Deleter {
    void operator()(Type* pObject) const { pfnDelete(pObject); }
};
using Settings = std::unique_ptr<fluid_settings_t, Deleter<fluid_settings_t, delete_fluid_settings>>;
using Synth = std::unique_ptr<fluid_synth_t, Deleter<fluid_synth_t, delete_fluid_synth>>;

double MagnitudeAt(const std::vector<float>& windowed, int nRate, double dFrequency) {
    // A phasor that turns with the frequency; renewed now and then so that rounding doesn't build up.
    const double dStep = 2.0 * std::numbers::pi * dFrequency / nRate;
    const double dTurnCos = std::cos(dStep);
    const double dTurnSin = std::sin(dStep);
    double dCos = 1.0;
    double dSin = 0.0;
    double dReal = 0.0;
    double dImaginary = 0.0;
    for (std::size_t i = 0; i < windowed.size(); ++i) {
        if (i % 4096 == 0) {
            dCos = std::cos(dStep * static_cast<double>(i));
            dSin = std::sin(dStep * static_cast<double>(i));
        }
        dReal += dCos * static_cast<double>(windowed[i]);
        dImaginary += dSin * static_cast<double>(windowed[i]);
        const double dNextCos = dCos * dTurnCos - dSin * dTurnSin;
        dSin = dCos * dTurnSin + dSin * dTurnCos;
        dCos = dNextCos;
    }
    return std::hypot(dReal, dImaginary);
}

}  // namespace

std::vector<float> RenderPluck(const Note& note, double dSeconds) {
    for (const int nLevel : {FLUID_PANIC, FLUID_ERR, FLUID_WARN, FLUID_INFO, FLUID_DBG}) {
        fluid_set_log_function(
            nLevel, [](int, const char*, void*) {}, nullptr);
    }
    const Settings settings(new_fluid_settings());
    fluid_settings_setnum(settings.get(), "synth.sample-rate", GUITAR_RATE);
    fluid_settings_setint(settings.get(), "synth.dynamic-sample-loading", 1);
    fluid_settings_setint(settings.get(), "synth.reverb.active", 0);
    fluid_settings_setint(settings.get(), "synth.chorus.active", 0);
    const Synth synth(new_fluid_synth(settings.get()));
    if (!synth || fluid_synth_sfload(synth.get(), SOUND_FONT, 1) < 0) {
        return {};
    }
    fluid_synth_program_change(synth.get(), 0, STEEL_STRING_GUITAR);
    fluid_synth_set_gen(synth.get(), 0, GEN_FINETUNE, static_cast<float>(note.dCents));
    fluid_synth_noteon(synth.get(), 0, note.nKey, 100);
    const auto nFrames = static_cast<std::size_t>(dSeconds * GUITAR_RATE);
    std::vector<float> left(nFrames);
    std::vector<float> right(nFrames);
    if (fluid_synth_write_float(synth.get(), static_cast<int>(nFrames), left.data(), 0, 1, right.data(), 0,
                                1) != FLUID_OK) {
        return {};
    }
    float fPeak = 0.0F;
    for (std::size_t i = 0; i < nFrames; ++i) {
        left[i] = 0.5F * (left[i] + right[i]);
        fPeak = std::max(fPeak, std::fabs(left[i]));
    }
    if (fPeak <= 0.0F) {
        return {};
    }
    // The hand damps the string at the end.
    const std::size_t nDamped = std::min<std::size_t>(nFrames, GUITAR_RATE / 4);
    for (std::size_t i = 0; i < nFrames; ++i) {
        const std::size_t nLeft = nFrames - i;
        const double dDamping =
            nLeft < nDamped
                ? std::exp(-8.0 * static_cast<double>(nDamped - nLeft) / static_cast<double>(nDamped))
                : 1.0;
        left[i] *= static_cast<float>(0.5 / static_cast<double>(fPeak) * dDamping);
    }
    return left;
}

double MeasurePitch(const std::vector<float>& samples, int nRate, double dExpected) {
    std::vector<float> windowed(samples.size());
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double dPhase =
            2.0 * std::numbers::pi * static_cast<double>(i) / static_cast<double>(samples.size());
        windowed[i] = static_cast<float>(samples[i] * 0.5 * (1.0 - std::cos(dPhase)));
    }
    double dWeighted = 0.0;
    double dWeights = 0.0;
    for (int nHarmonic = 1; nHarmonic <= 4; ++nHarmonic) {
        const double dCentre = dExpected * nHarmonic;
        const double dResolution = static_cast<double>(nRate) / static_cast<double>(samples.size());
        // Coarse steps of a quarter of the resolution, then a ternary search around the best of them.
        double dBest = dCentre;
        double dBestMagnitude = 0.0;
        const double dReach = dCentre * (std::exp2(0.6 / 12.0) - 1.0);
        const int nSteps = static_cast<int>(8.0 * dReach / dResolution);
        for (int nStep = 0; nStep <= nSteps; ++nStep) {
            const double f = dCentre - dReach + nStep * dResolution / 4.0;
            const double dMagnitude = MagnitudeAt(windowed, nRate, f);
            if (dMagnitude > dBestMagnitude) {
                dBest = f;
                dBestMagnitude = dMagnitude;
            }
        }
        double dLow = dBest - dResolution / 2.0;
        double dHigh = dBest + dResolution / 2.0;
        for (int nStep = 0; nStep < 30; ++nStep) {
            const double dThird = (dHigh - dLow) / 3.0;
            if (MagnitudeAt(windowed, nRate, dLow + dThird) < MagnitudeAt(windowed, nRate, dHigh - dThird)) {
                dLow += dThird;
            } else {
                dHigh -= dThird;
            }
        }
        dWeighted += dBestMagnitude * 0.5 * (dLow + dHigh) / nHarmonic;
        dWeights += dBestMagnitude;
    }
    return dWeighted / dWeights;
}

bool WriteWave(const std::vector<float>& samples, int nRate, const std::filesystem::path& file) {
    std::ofstream stream(file, std::ios::binary);
    const auto put = [&stream](std::uint32_t nValue, int nBytes) {
        for (int i = 0; i < nBytes; ++i) {
            stream.put(static_cast<char>(nValue >> 8 * i & 0xFF));
        }
    };
    const auto nDataBytes = static_cast<std::uint32_t>(samples.size() * 2);
    stream << "RIFF";
    put(36 + nDataBytes, 4);
    stream << "WAVEfmt ";
    put(16, 4);
    put(1, 2);
    put(1, 2);
    put(static_cast<std::uint32_t>(nRate), 4);
    put(static_cast<std::uint32_t>(nRate) * 2, 4);
    put(2, 2);
    put(16, 2);
    stream << "data";
    put(nDataBytes, 4);
    for (const float fSample : samples) {
        const long nSample = std::lround(std::clamp(static_cast<double>(fSample), -1.0, 1.0) * 32767.0);
        put(static_cast<std::uint32_t>(static_cast<std::int32_t>(nSample)) & 0xFFFF, 2);
    }
    return stream.good();
}
