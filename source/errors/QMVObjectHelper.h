#pragma once

#include "platform/Automation.h"

/// Creates automation objects; failures are raised as codes of this component.
class QMVObjectHelper {
public:
    /// Creates an object of class `clsid` and asks it for `iid`. Raises QMV_E_OBJECT_NOT_CREATED, with `*object` null,
    /// when that fails, whatever the reason.
    static HRESULT CREATE_OBJECT(REFCLSID clsid, REFIID iid, void** object);
};
