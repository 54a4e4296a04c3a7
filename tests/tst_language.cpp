#include "data/TarveloCommon.h"
#include "data/TarveloSettings.h"
#include "data/TarveloUser.h"
#include "foundation/AbstractMetaDescription.h"
#include "foundation/AbstractMetaDescriptor.h"
#include "foundation/LanguageContext.h"
#include "session/SessionExport.h"
#include "session/SessionReport.h"
#include "support/SessionFixtures.h"

#include <QProcess>
#include <QRegularExpression>
#include <QTranslator>
#include <QXmlStreamReader>
#include <QtTest>

#include <memory>

namespace {
// The messages of a translation source that have no finished translation, and in the English
// one those still in Russian, as: context "source".
QStringList untranslated(const QByteArray &xml, bool english)
{
    QStringList result;
    QXmlStreamReader reader(xml);
    QString context;
    QString source;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (reader.name() == QLatin1String("name")) {
            context = reader.readElementText();
        } else if (reader.name() == QLatin1String("source")) {
            source = reader.readElementText();
        } else if (reader.name() == QLatin1String("translation")) {
            const bool finished = reader.attributes().value(QLatin1String("type")).isEmpty();
            const QString text = reader.readElementText(QXmlStreamReader::IncludeChildElements);
            if (!finished || text.isEmpty()
                || (english && text.contains(QRegularExpression(QStringLiteral("\\p{Cyrillic}")))))
                result << context + QStringLiteral(" \"") + source + QLatin1Char('"');
        }
    }
    return result;
}

// Keys that views translate at run time, which lupdate can't see in the code: the vocabulary,
// and the names, categories, affixes and choices that the settings forms show.
QList<std::pair<QByteArray, QString>> keysShownByName()
{
    QList<std::pair<QByteArray, QString>> keys;
    const auto addKeys = [&keys](const QMetaEnum &meta, const char *context, int count) {
        for (int i = 0; i < count; ++i)
            keys.push_back({context, QLatin1String(meta.key(i))});
    };
    addKeys(QMetaEnum::fromType<TarveloCommon::Stimulus>(), "Stimulus",
            TarveloCommon::StimulusCount);
    addKeys(QMetaEnum::fromType<TarveloCommon::Button>(), "Generic", TarveloCommon::BTN_None);
    TarveloSettings settings;
    TarveloUser user;
    for (NTSettings *object : QList<NTSettings *> {&settings, &user}) {
        for (const AbstractMetaDescription *property : object->metaDescriptor()->getProperties()) {
            for (const QString &text :
                 {property->name(), property->category(), property->suffix(), property->prefix()}) {
                if (property->visible() && !text.isEmpty() && !text.startsWith(QLatin1String("!-")))
                    keys.push_back({"Generic", text});
            }
            const QMetaEnum choices = property->enumerator();
            if (property->isEnumType())
                addKeys(choices, choices.name(), choices.keyCount());
        }
    }
    return keys;
}

// What each language shows in a report, in its export and in Qt's own dialogs.
const QMap<QString, QStringList> ShownTexts {
    {QStringLiteral("ru_RU"), {"зел.", "п.нога", "Правильные", "Повтор", "Отмена"}},
    {QStringLiteral("en_US"), {"green", "r.foot", "Correct", "Repeat", "Cancel"}},
};
} // namespace

class LanguageTest : public QObject
{
    Q_OBJECT
private slots:
    // First: the report's texts keep the language of their first use.
    void systemLanguageDecidesReportExportAndDialogs();
    void everyTextShownHasAFinishedTranslation_data();
    void everyTextShownHasAFinishedTranslation();
    void explicitLanguagesAreTakenAsTheyAreMeant();
};

void LanguageTest::systemLanguageDecidesReportExportAndDialogs()
{
    // ctest runs this on a Russian, a German and an American system.
    const QString expected = qEnvironmentVariable("TARVELO_EXPECTED_LANGUAGE");
    if (expected.isEmpty())
        QSKIP("needs LC_ALL and TARVELO_EXPECTED_LANGUAGE, as ctest sets them");
    QCOMPARE(LanguageContext::setLanguage(QStringLiteral("ru-RU")), expected);
    QCOMPARE(LanguageContext::AutoDetectLanguage(QStringLiteral("/nonexistent/Settings.xml")),
             expected);

    std::unique_ptr<TarveloSession> session(SessionFixtures::reportSession());
    session->setFinished(true);
    const SessionReport report(*session);
    QTemporaryDir folder;
    const QString csvPath = folder.filePath(QStringLiteral("report.csv"));
    QVERIFY(SessionExport::writeTable(SessionExport::Format::Csv, report.exportTable(), csvPath,
                                      SessionExport::sheetName(*session)));
    const QString csv = QString::fromUtf8(TestFiles::read(csvPath));
    const QStringList shown = ShownTexts.value(expected);
    for (const QString &text : shown.mid(0, 3))
        QVERIFY2(csv.contains(text) && report.html().contains(text), qPrintable(text));
    QVERIFY(report.html().contains(shown.at(3))); // the export keeps the box's own word
    QCOMPARE(QCoreApplication::translate("QPlatformTheme", "Cancel"), shown.at(4));
}

void LanguageTest::everyTextShownHasAFinishedTranslation_data()
{
    QTest::addColumn<QString>("language");
    QTest::newRow("Russian") << QStringLiteral("ru_RU");
    QTest::newRow("English") << QStringLiteral("en_US");
}

// lupdate reads the code into a copy of the file in the repository: a text that came in new,
// or was left unfinished, has no translation yet. Keys shown by name are looked up in the
// compiled file.
void LanguageTest::everyTextShownHasAFinishedTranslation()
{
#ifndef TARVELO_WIDGETS_BUILT
    QSKIP("Only the core is built here, so lupdate can't read the texts of the pages");
#endif
    QFETCH(QString, language);
    const QString name = QStringLiteral("Tarvelo_%1.ts").arg(language);
    QTemporaryDir folder;
    const QString fresh = folder.filePath(name);
    QVERIFY(QFile::copy(QStringLiteral(TARVELO_TRANSLATIONS "/") + name, fresh));
    QProcess lupdate;
    lupdate.setProcessChannelMode(QProcess::ForwardedChannels);
    lupdate.start(QStringLiteral(TARVELO_LUPDATE),
                  {QStringLiteral("-silent"), QStringLiteral("-no-obsolete"),
                   QStringLiteral("@" TARVELO_LUPDATE_INPUTS), QStringLiteral("-ts"), fresh});
    QVERIFY(lupdate.waitForFinished(120000));
    QCOMPARE(lupdate.exitCode(), 0);
    const QByteArray updated = TestFiles::read(fresh);
    QVERIFY(updated.count("<message>") > 100);
    QStringList missing = untranslated(updated, language == QLatin1String("en_US"));

    QTranslator compiled;
    QVERIFY(compiled.load(QStringLiteral(":/resources/translations/Tarvelo_%1.qm").arg(language)));
    for (const auto &[context, key] : keysShownByName()) {
        if (compiled.translate(context.constData(), key.toUtf8().constData()).isEmpty())
            missing << QString::fromLatin1(context) + QStringLiteral(" \"") + key
                    + QStringLiteral("\", read at run time: needs a QT_TRANSLATE_NOOP in the code");
    }
    QVERIFY2(missing.isEmpty(),
             qPrintable(name
                        + QStringLiteral(" lacks, after `cmake --build build --target "
                                         "lupdate` fill in:\n")
                        + missing.join(QLatin1Char('\n'))));
}

void LanguageTest::explicitLanguagesAreTakenAsTheyAreMeant()
{
    QCOMPARE(LanguageContext::setLanguage(QStringLiteral("ru_RU")), QStringLiteral("ru_RU"));
    QCOMPARE(QCoreApplication::translate("Generic", "BTN_Pedal_Left"), QStringLiteral("л.нога"));
    QCOMPARE(LanguageContext::translate(QStringLiteral("TarveloSessionWidget"),
                                        QStringLiteral("Экспорт"), QStringLiteral("en-US")),
             QStringLiteral("Export"));
    QCOMPARE(LanguageContext::multilingualTranslate(QStringLiteral("Generic"),
                                                    QStringLiteral("BTN_White")),
             (QMap<QString, QString> {{"en_US", "white"}, {"ru_RU", "бел."}}));
    QTemporaryDir folder;
    const QString settings = folder.filePath(QStringLiteral("Settings.xml"));
    QVERIFY(TestFiles::write(settings, "<Language>ru_RU</Language><Language>en_US</Language>"));
    QCOMPARE(LanguageContext::AutoDetectLanguage(settings), QStringLiteral("en_US"));
}

QTEST_GUILESS_MAIN(LanguageTest)
#include "tst_language.moc"
