// Figures for the settings files: how long the model's subject list takes to read, and what one
// autosaved change of the application settings costs. Prints the figures; times nothing as a test.
#include "data/TarveloSettings.h"
#include "data/TarveloUser.h"
#include "foundation/FileUtilities.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTextStream>

namespace {

constexpr int subjects = 1000;
constexpr int changes = 500;

void fileSubjects(const QString &records)
{
    for (int i = 0; i < subjects; ++i) {
        TarveloUser user;
        user.setLastName(QStringLiteral("Иванов%1").arg(i));
        user.setFirstName(QStringLiteral("Иван"));
        user.setDOBYear(1950 + i % 60);
        user.setGender(TarveloUser::Male);
        user.createGuid();
        user.saveIn(records);
    }
}

// What the model does at each reload of the subject list.
double readSubjects(const QString &records, int *read)
{
    QElapsedTimer timer;
    timer.start();
    const QStringList folders = FileUtilities::GetSubfolders(records, true, false);
    QList<TarveloUser *> users;
    for (const QString &folder : folders) {
        auto *user = new TarveloUser;
        user->setFilepath(folder + TarveloUser::fileName());
        user->reload();
        users << user;
    }
    const double ms = timer.nsecsElapsed() / 1e6;
    *read = users.size();
    qDeleteAll(users);
    return ms;
}

double autosavedChange()
{
    TarveloSettings settings;
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < changes; ++i)
        settings.setComPort(1 + i % 99);
    return timer.nsecsElapsed() / 1e6 / changes;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QTemporaryDir dir;
    if (!dir.isValid())
        return 1;
    QDir::setCurrent(dir.path());
    const QString records = dir.filePath(QStringLiteral("Records"));
    fileSubjects(records);

    QTextStream out(stdout);
    int read = 0;
    readSubjects(records, &read); // warm the file cache
    const double listMs = readSubjects(records, &read);
    out << "subjects read: " << read << " in " << QString::number(listMs, 'f', 1) << " ms ("
        << QString::number(listMs * 1000 / read, 'f', 1) << " us each)\n";
    out << "autosaved settings change: " << QString::number(autosavedChange() * 1000, 'f', 1)
        << " us each (whole Settings.xml rewritten atomically)\n";
    return 0;
}
