#include "ModelSwitches.h"

namespace sim {

const QList<ModelSwitches>& Models() {
    static const QList<ModelSwitches> models{
        {QStringLiteral("ZorvaneFPU"), true, false, false, 8, {2200, 1000, 500, 400, 0, 0, 0, 0}, false},
        {QStringLiteral("Tessorim"), false, true, true, 4, {2200, 1000, 500, 400}, false},
    };
    return models;
}

const ModelSwitches* FindModel(const QString& deviceName) {
    for (const auto& m : Models())
        if (m.deviceName == deviceName)
            return &m;
    return nullptr;
}

} // namespace sim
