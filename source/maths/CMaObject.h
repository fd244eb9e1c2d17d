#pragma once

/// The common root of the geometry classes. All of them are values: copying one copies everything it holds.
class CMaObject {
public:
    virtual ~CMaObject() = default;

protected:
    CMaObject() = default;
    CMaObject(const CMaObject&) = default;
    CMaObject(CMaObject&&) = default;
    CMaObject& operator=(const CMaObject&) = default;
    CMaObject& operator=(CMaObject&&) = default;
};
