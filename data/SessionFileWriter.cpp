#include "SessionFileWriter.h"

#include "TarveloSession.h"
#include "foundation/FileUtilities.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace {
// A stage object stands two levels deep: in the top object's "stages" array.
const QByteArray StageIndent(8, ' ');
const QByteArray StageSeparator = QByteArrayLiteral(",\n");
// The empty stages array of the header is written "[", a line feed, four blanks and "]"; the
// stages go between the two lines. No text value holds a line feed of its own, as JSON escapes
// it, so this line stands in the header once.
const QByteArray StagesOpening = QByteArrayLiteral("\n    \"stages\": [\n");
} // namespace

SessionFileWriter::SessionFileWriter(const TarveloSession &session)
    : m_session(session)
{
}

QByteArray SessionFileWriter::stageBlock(const SessionStage &stage)
{
    // The stage's own document, each line indented as the stages array nests it.
    QByteArray block = QJsonDocument(stage.toJson()).toJson(QJsonDocument::Indented);
    block.chop(1);
    return StageIndent + block.replace('\n', '\n' + StageIndent);
}

QByteArray SessionFileWriter::bytes()
{
    const QList<SessionStage *> stages = m_session.stages();
    for (; m_settledCount < stages.size() - 1; ++m_settledCount)
        m_settled += stageBlock(*stages.at(m_settledCount)) + StageSeparator;
    const QByteArray last =
        stages.isEmpty() ? QByteArray() : stageBlock(*stages.constLast()) + '\n';

    const QByteArray header = QJsonDocument(m_session.headerJson()).toJson(QJsonDocument::Indented);
    const int split = header.indexOf(StagesOpening) + StagesOpening.size();
    QByteArray file;
    file.reserve(header.size() + m_settled.size() + last.size());
    file += header.left(split);
    file += m_settled;
    file += last;
    file += header.mid(split);
    return file;
}

bool SessionFileWriter::save(const QString &folder, QString *error)
{
    const QString target = FileUtilities::FolderSlash(folder);
    FileUtilities::createIfNotExists(target);
    return FileUtilities::writeAtomically(target + m_session.fileName(), bytes(), error);
}
