#pragma once

// Root of what a Standard MIDI File is made of.
class CMidiObject {
public:
    virtual ~CMidiObject() = default;

    CMidiObject(const CMidiObject&) = delete;
    CMidiObject& operator=(const CMidiObject&) = delete;

protected:
    CMidiObject() = default;
};
