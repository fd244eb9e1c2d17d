#pragma once

#include "interface/IQMVCalculator.h"
#include "platform/ComPointer.h"
#include "server/EntryPoints.h"

/// The class factory of the calculator, through the component's own entry point: no registration is needed.
inline qmv40::ComPointer<IClassFactory> CalculatorFactory() {
    qmv40::ComPointer<IClassFactory> factory;
    DllGetClassObject(CLSID_QMVCalculator, IID_IClassFactory, factory.Receive());
    return factory;
}

/// A new calculator; null if it could not be created.
inline qmv40::ComPointer<IQMVCalculator2> CreateCalculator() {
    qmv40::ComPointer<IQMVCalculator2> calculator;
    const qmv40::ComPointer<IClassFactory> factory = CalculatorFactory();
    if (factory) factory->CreateInstance(nullptr, IID_IQMVCalculator2, calculator.Receive());
    return calculator;
}
