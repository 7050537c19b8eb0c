#pragma once

#include "platform/windows/WinApp.h"

// The tuner's application object.
class CTunerApp final : public CWinApp {
public:
    bool InitInstance() override;
};
