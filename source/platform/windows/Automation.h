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

/// What a dual interface derives from: late binding is the platform's here.
using DualInterfaceBase = IDispatch;
