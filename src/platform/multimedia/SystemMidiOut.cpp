#include "platform/multimedia/SystemMidiOut.h"

#include "platform/multimedia/BuiltInSynthesizer.h"
#include "platform/multimedia/MidiPorts.h"

namespace {

class CSystemMidiOut final : public IMidiOutBackend {
public:
    void Prepare() override { m_pSynthesizer->Prepare(); }
    UINT GetNumDevs() override { return 1 + m_pPorts->GetNumDevs(); }
    MMRESULT GetDevCaps(UINT uDeviceId, MIDIOUTCAPS& caps) override {
        return uDeviceId == 0 ? m_pSynthesizer->GetDevCaps(0, caps)
                              : m_pPorts->GetDevCaps(uDeviceId - 1, caps);
    }
    MMRESULT Open(UINT uDeviceId, std::shared_ptr<IMidiOutPort>& pPort) override {
        return uDeviceId == 0 ? m_pSynthesizer->Open(0, pPort) : m_pPorts->Open(uDeviceId - 1, pPort);
    }

private:
    std::shared_ptr<IMidiOutBackend> m_pSynthesizer = MakeBuiltInSynthesizer(DefaultSoundFonts());
    std::shared_ptr<IMidiOutBackend> m_pPorts = MakeMidiPortsBackend();
};

}  // namespace

std::shared_ptr<IMidiOutBackend> MakeSystemMidiOutBackend() {
    return std::make_shared<CSystemMidiOut>();
}
