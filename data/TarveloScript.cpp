#include "TarveloScript.h"

#include "KeyValueText.h"
#include "foundation/FileUtilities.h"
#include "foundation/WriteFailures.h"

#include <QFile>

#include <algorithm>

TarveloScript::TarveloScript(QObject *parent)
    : QObject(parent)
{
}

TarveloScript::~TarveloScript()
{
    qDeleteAll(m_stages);
}

bool TarveloScript::load(const QString &path)
{
    m_filePath = path;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    fromText(QString::fromUtf8(file.readAll()), this);
    return true;
}

bool TarveloScript::save(const QString &path) const
{
    const QString target = path.isEmpty() ? m_filePath : path;
    QString error;
    const bool written = FileUtilities::writeAtomically(target, toText().toUtf8(), &error);
    if (!written)
        WriteFailures::report(target, error);
    return written;
}

QString TarveloScript::headerText() const
{
    // Plain concatenation: the texts are user input and may hold "%" sequences.
    return QStringLiteral("title=") + m_title + QStringLiteral(";description=") + m_description
        + QStringLiteral(";message=") + m_message + QStringLiteral(";fullDuration=")
        + (m_fullDuration ? QLatin1Char('1') : QLatin1Char('0')) + QStringLiteral(";toneLo=")
        + QString::number(m_toneLo) + QStringLiteral(";toneHi=") + QString::number(m_toneHi)
        + QStringLiteral(";stages=") + QString::number(m_stages.size()) + QLatin1Char(';');
}

QString TarveloScript::toText() const
{
    QStringList lines {headerText()};
    for (const ScriptStage *stage : m_stages)
        lines << stage->toText();
    return lines.join(QStringLiteral("\r\n"));
}

TarveloScript *TarveloScript::fromText(const QString &text, TarveloScript *script)
{
    if (!script)
        script = new TarveloScript;
    const QStringList lines = text.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    // A header without any stage line counts as an empty script, header values included.
    if (lines.size() < 2)
        return script;

    const QMap<QString, QString> header =
        parseKeyValues(lines.constFirst(), QStringLiteral(";"), QStringLiteral("="));
    script->m_title = header.value(QStringLiteral("title"));
    script->m_description = header.value(QStringLiteral("description"));
    script->m_message = header.value(QStringLiteral("message"));
    script->m_toneLo =
        quint16(header.value(QStringLiteral("toneLo"), QStringLiteral("100")).toInt());
    script->m_toneHi =
        quint16(header.value(QStringLiteral("toneHi"), QStringLiteral("1000")).toInt());
    script->m_fullDuration =
        header.value(QStringLiteral("fullDuration"), QStringLiteral("0")) == QLatin1String("1");
    for (int i = 1; i < lines.size(); ++i)
        script->m_stages << ScriptStage::fromText(lines.at(i));
    return script;
}

bool TarveloScript::hasSteps() const
{
    return std::any_of(m_stages.cbegin(), m_stages.cend(),
                       [](const ScriptStage *stage) { return !stage->steps.isEmpty(); });
}

void TarveloScript::addStage(ScriptStage *stage)
{
    m_stages << stage;
}

void TarveloScript::removeStage(int index)
{
    if (index >= 0 && index < m_stages.size())
        m_stages.removeAt(index);
}
