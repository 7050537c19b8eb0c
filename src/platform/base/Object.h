#pragma once

#include <memory>

class CArchive;
class CObject;

// What a class can tell of itself at run time: its name, the version of its stored form, how to make one.
struct CRuntimeClass {
    const char* szName;
    int nSchema;
    std::unique_ptr<CObject> (*pfnCreate)();

    std::unique_ptr<CObject> CreateObject() const { return pfnCreate ? pfnCreate() : nullptr; }
};

// Root of the classes with a run-time class. A derived class that can be made by name gives
// `RuntimeClassOf<CDerived>("CDerived", 1)` from GetRuntimeClass.
class CObject {
public:
    virtual const CRuntimeClass& GetRuntimeClass() const;
    virtual ~CObject() = default;
    virtual void Serialize(CArchive& archive);

    CObject(const CObject&) = delete;
    CObject& operator=(const CObject&) = delete;
    CObject(CObject&&) = delete;
    CObject& operator=(CObject&&) = delete;

protected:
    CObject() = default;
};

// The run-time class of T, made once; szName must outlive the program (a literal).
template <class T>
const CRuntimeClass& RuntimeClassOf(const char* szName, int nSchema) {
    static const CRuntimeClass runtimeClass{szName, nSchema,
                                            [] { return std::unique_ptr<CObject>(std::make_unique<T>()); }};
    return runtimeClass;
}
