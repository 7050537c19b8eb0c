#pragma once

#include "platform/base/Types.h"

// Appends dated lines to a text file. It has no levels, and no failure of its own: a line that cannot be
// written is lost.
class CErrorLog {
public:
    explicit CErrorLog(CString strFile = {});

    void SetFile(CString strFile);

    // Appends "<local time>: <message>" and a line end, and closes the file again.
    void Log(const CString& strMessage) const;

private:
    CString m_strFile;
};
