#pragma once

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <oaidl.h>
#include <objbase.h>
#include <oleauto.h>

/// The base of dual interfaces: the platform's interface for late binding.
using DualInterfaceBase = IDispatch;
