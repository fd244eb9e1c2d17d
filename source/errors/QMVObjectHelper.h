#pragma once

#include "platform/Automation.h"

/// Creates automation objects; failures are raised as codes of this component.
class QMVObjectHelper {
public:
    /// Creates an object of class `clsid` and queries it for `iid`. After any failure `*object` is null and
    /// QMV_E_OBJECT_NOT_CREATED is raised.
    static HRESULT CREATE_OBJECT(REFCLSID clsid, REFIID iid, void** object);
};
