#pragma once

#include "platform/base/Archive.h"
#include "platform/base/Types.h"
#include "tones/MidiLinked.h"
#include "tones/MidiMessage.h"
#include "tones/MidiObject.h"

inline constexpr BYTE MIDI_STATUS_SYSEX = 0xF0;
inline constexpr BYTE MIDI_STATUS_META = 0xFF;

// A timed event of a track. The links make a list out of events that somebody else owns; the list's first
// node is a CMidiEventHead.
class CMidiEvent : public CMidiObject, public CMidiLinked<CMidiEvent> {
public:
    // Reads what follows the status. `nBytesRead` becomes the bytes taken. False when they ran out, or the
    // file failed.
    virtual bool Read(CArchive& archive, DWORD& nBytesRead) = 0;
    // Writes the whole event. False when the file failed.
    virtual bool Write(CArchive& archive) const = 0;
    // Writes a line for people to read. CFileException when the file failed.
    virtual void Dump(CFile& file) const = 0;
    // Clears the message and fills it from this event.
    virtual void GetMessage(CMidiMessage& message) const;
    virtual void GetName(CString& strText) const = 0;
    virtual void GetText(CString& strText) const = 0;
    virtual DWORD GetValue() const = 0;
    // What the value or the text is: 0 none, 1 text, 2 tempo, 3 time signature, 4 key signature.
    virtual int GetKind() const = 0;
    virtual void FillMessage(CMidiMessage& message) const = 0;

    DWORD GetDelta() const { return m_nDelta; }
    BYTE GetStatus() const { return m_nStatus; }

protected:
    CMidiEvent(DWORD nDelta, BYTE nStatus) : m_nDelta(nDelta), m_nStatus(nStatus) {}

    DWORD m_nDelta;
    BYTE m_nStatus;
};

// The node in front of a track's first event.
class CMidiEventHead final : public CMidiEvent {
public:
    CMidiEventHead() : CMidiEvent(0, 0) {}

    bool Read(CArchive& /*archive*/, DWORD& nBytesRead) override;
    bool Write(CArchive& /*archive*/) const override { return false; }
    void Dump(CFile& /*file*/) const override {}
    void GetName(CString& strText) const override { strText.clear(); }
    void GetText(CString& strText) const override { strText.clear(); }
    DWORD GetValue() const override { return 0; }
    int GetKind() const override { return 0; }
    void FillMessage(CMidiMessage& message) const override { message.m_nKind = MIDI_KIND_NONE; }
};
