#include "TarveloSession.h"

#include "SessionFileWriter.h"
#include "foundation/TextHelper.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {
const QString KeyEnd = QStringLiteral("end");
const QString KeyScriptTitle = QStringLiteral("scriptTitle");
const QString KeyStages = QStringLiteral("stages");
const QString KeyStart = QStringLiteral("start");
const QString KeyUserGUID = QStringLiteral("userGUID");
const QString KeyUserName = QStringLiteral("userName");
const QString FileSuffix = QStringLiteral(".session");
} // namespace

TarveloSession::TarveloSession(QObject *parent)
    : QObject(parent)
{
}

TarveloSession::~TarveloSession()
{
    qDeleteAll(m_stages);
}

void TarveloSession::addStage(SessionStage *stage)
{
    if (stage)
        m_stages.append(stage);
}

QString TarveloSession::fileName() const
{
    return TextHelper::DateTimeFileString(m_start, false) + FileSuffix;
}

QString TarveloSession::fileSuffix()
{
    return FileSuffix;
}

bool TarveloSession::save(const QString &folder, QString *error) const
{
    return SessionFileWriter(*this).save(folder, error);
}

TarveloSession *TarveloSession::load(const QString &path, TarveloSession *session)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return session ? session : new TarveloSession;
    return fromJson(file.readAll(), session);
}

TarveloSession *TarveloSession::fromJson(const QByteArray &bytes, TarveloSession *session)
{
    if (!session)
        session = new TarveloSession;
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError)
        return session;
    // A document whose top is an array reads as an empty object: header defaults, no stages.
    session->readJson(document.object());
    return session;
}

QJsonObject TarveloSession::toJson() const
{
    QJsonArray stages;
    for (const SessionStage *stage : m_stages)
        stages.append(stage->toJson());
    QJsonObject object = headerJson();
    object.insert(KeyStages, stages);
    return object;
}

QJsonObject TarveloSession::headerJson() const
{
    return QJsonObject {
        {KeyEnd, m_end.toString(Qt::ISODate)},
        {KeyScriptTitle, m_scriptTitle},
        {KeyStages, QJsonArray()},
        {KeyStart, m_start.toString(Qt::ISODate)},
        {KeyUserGUID, m_userGUID},
        {KeyUserName, m_userName},
    };
}

void TarveloSession::readJson(const QJsonObject &object)
{
    m_scriptTitle = object.value(KeyScriptTitle).toString();
    m_userName = object.value(KeyUserName).toString();
    m_userGUID = object.value(KeyUserGUID).toString();
    m_start = QDateTime::fromString(object.value(KeyStart).toString(), Qt::ISODate);
    m_end = QDateTime::fromString(object.value(KeyEnd).toString(), Qt::ISODate);
    const QJsonValue stages = object.value(KeyStages);
    if (!stages.isArray())
        return;
    const QJsonArray entries = stages.toArray();
    for (const QJsonValue &entry : entries) {
        if (entry.isObject())
            addStage(SessionStage::fromJson(entry.toObject()));
    }
}
