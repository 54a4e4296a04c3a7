#include "ScriptStage.h"

#include "KeyValueText.h"
#include "StageTransfer.h"

#include <QRandomGenerator>

#include <algorithm>

namespace {
// Plain decimal form of an integer text ("007" gives "7"); empty if it isn't one.
QString normalised(const QString &text)
{
    bool ok = false;
    const int value = text.toInt(&ok);
    return ok ? QString::number(value) : QString();
}

// The threshold field behind a transfer key, or null; const-correct for both stage kinds.
template<typename Stage>
auto transferField(Stage &stage, const QString &key) -> decltype(&stage.stop)
{
    using namespace StageTransfer;
    if (key == Key::Stop)
        return &stage.stop;
    if (key == Key::BackTwo)
        return &stage.sm2;
    if (key == Key::BackOne)
        return &stage.sm1;
    if (key == Key::Repeat)
        return &stage.s0;
    if (key == Key::NextOne)
        return &stage.sp1;
    if (key == Key::NextTwo)
        return &stage.sp2;
    return nullptr;
}

int drawHundreds(int base, int jitter)
{
    if (jitter <= 0)
        return base;
    const int low = base / 100;
    const int high = (base + jitter) / 100;
    // The upper bound is excluded; bounds that meet leave the lower one.
    const int offset =
        high > low ? int(QRandomGenerator::system()->bounded(quint32(high - low))) : 0;
    return (low + offset) * 100;
}
} // namespace

ScriptStage::~ScriptStage()
{
    qDeleteAll(steps);
}

QString ScriptStage::value(const QString &key) const
{
    if (key == StageTransfer::Key::MaxRepeats)
        return QString::number(maxRepeats);
    const QString *text = transferField(*this, key);
    return text ? *text : QString();
}

void ScriptStage::setValue(const QString &key, const QString &text)
{
    const QString value = normalised(text);
    if (key == StageTransfer::Key::MaxRepeats)
        maxRepeats = value.toInt();
    else if (QString *target = transferField(*this, key))
        *target = value;
}

QString ScriptStage::headerText() const
{
    QString text;
    for (const QString &key : StageTransfer::keys())
        text += key + QLatin1Char('=') + value(key) + QLatin1Char(';');
    return text;
}

QString ScriptStage::toText() const
{
    QString text = headerText();
    for (const ScriptStep *step : steps)
        text += QLatin1Char('[') + step->fileText() + QLatin1Char(']');
    return text;
}

ScriptStage *ScriptStage::fromText(const QString &line)
{
    const QString trimmed = line.trimmed();
    // A bracket at position 0 leaves everything in the head, so such a line has no steps.
    const int bracket = trimmed.indexOf(QLatin1Char('['));
    const QString head = bracket > 0 ? trimmed.left(bracket) : trimmed;
    const QString tail = bracket > 0 ? trimmed.mid(bracket) : QString();

    auto *stage = new ScriptStage;
    const QMap<QString, QString> pairs =
        parseKeyValues(head, QStringLiteral(";"), QStringLiteral("="));
    for (const QString &key : StageTransfer::keys()) {
        if (pairs.contains(key))
            stage->setValue(key, pairs.value(key));
    }

    const QStringList groups = tail.split(QLatin1Char(']'), Qt::SkipEmptyParts);
    for (QString group : groups) {
        if (group.startsWith(QLatin1Char('[')))
            group.remove(0, 1);
        if (group.endsWith(QLatin1Char(']')))
            group.chop(1);
        const QMap<QString, QString> values =
            parseKeyValues(group, QStringLiteral(","), QStringLiteral("="));
        auto *step = new ScriptStep;
        step->stimulus = values.value(QStringLiteral("s"), QStringLiteral("1")).toInt();
        // Values up to 21 and negative ones pass unchanged; files in the field rely on it.
        if (step->stimulus >= 22)
            step->stimulus = 0;
        step->delay = values.value(QStringLiteral("d"), QStringLiteral("1000")).toInt();
        step->duration = values.value(QStringLiteral("t"), QStringLiteral("2000")).toInt();
        stage->steps << step;
    }
    return stage;
}

ScriptStage *ScriptStage::generate(int count, const QList<int> &stimuli, int duration, int delay,
                                   int durationJitter, int delayJitter)
{
    auto *stage = new ScriptStage;
    const QList<int> pool = stimuli.isEmpty() ? QList<int> {0} : stimuli;
    // A pool of one distinct value can't give two different neighbours: such a stage ends at
    // one step instead of drawing for ever.
    const bool canAlternate =
        std::any_of(pool.cbegin(), pool.cend(), [&pool](int s) { return s != pool.constFirst(); });
    const int target = canAlternate ? count : qMin(count, 1);
    while (stage->steps.size() < target) {
        const int stepDelay = drawHundreds(delay, delayJitter);
        const int stepDuration = drawHundreds(duration, durationJitter);
        const int stimulus =
            pool.at(int(QRandomGenerator::system()->bounded(quint32(pool.size()))));
        if (!stage->steps.isEmpty() && stage->steps.constLast()->stimulus == stimulus)
            continue;
        auto *step = new ScriptStep;
        step->delay = stepDelay;
        step->duration = stepDuration;
        step->stimulus = stimulus;
        stage->steps << step;
    }
    return stage;
}
