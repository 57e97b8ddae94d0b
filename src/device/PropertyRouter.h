#pragma once

#include "IFiscalPrinter.h"

#include <QVariant>

// A control that keeps its properties behind two generic entries. It implements every named
// accessor of IFiscalPrinter by forwarding to ReadProperty / WriteProperty with the property's
// id; the QVariant holds the control-side type (int32_t, QString or bool).
class PropertyRouter : public IFiscalPrinter {
public:
    virtual QVariant ReadProperty(Prop id) = 0;
    virtual void WriteProperty(Prop id, const QVariant& value) = 0;

#define FPU_ROUTE_PROPERTY(name, kind, access)                                                             \
    FPU_CTL_TYPE(kind) name() override { return ReadProperty(Prop::name).value<FPU_CTL_TYPE(kind)>(); }    \
    FPU_IF_WRITABLE(access, void Set##name(const FPU_CTL_TYPE(kind) & value) override {                    \
        WriteProperty(Prop::name, QVariant::fromValue(value));                                             \
    })
    FPU_PROPERTIES(FPU_ROUTE_PROPERTY)
#undef FPU_ROUTE_PROPERTY
};
