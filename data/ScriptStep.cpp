#include "ScriptStep.h"

#include "TarveloCommon.h"

QString ScriptStep::wireText() const
{
    return QStringLiteral("s=%1;b=%2;t=%3;d=%4;")
        .arg(stimulus)
        .arg(int(requiredButton(stimulus)))
        .arg(duration)
        .arg(delay);
}

QString ScriptStep::fileText() const
{
    return QStringLiteral("s=%1,b=%2,t=%3,d=%4")
        .arg(stimulus)
        .arg(int(requiredButton(stimulus)))
        .arg(duration)
        .arg(delay);
}
