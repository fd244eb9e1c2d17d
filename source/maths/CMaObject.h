#pragma once

/// The base class of the geometry classes. All of them are values: a copy has its own data.
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
