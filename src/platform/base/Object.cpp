#include "platform/base/Object.h"

const CRuntimeClass& CObject::GetRuntimeClass() const {
    static const CRuntimeClass runtimeClass{"CObject", 0, nullptr};
    return runtimeClass;
}

void CObject::Serialize(CArchive& /*archive*/) {}
