#include "SessionFixtures.h"
#include "app/TarveloCommon.h"
#include "data/TarveloSettings.h"
#include "data/TarveloUser.h"
#include "foundation/AbstractMetaDescription.h"
#include "foundation/AbstractMetaDescriptor.h"
#include "foundation/LanguageContext.h"
#include "session/SessionExport.h"
#include "session/SessionReport.h"

#include <QProcess>
#include <QRegularExpression>
#include <QTranslator>
#include <QXmlStreamReader>
#include <QtTest>

#include <memory>

namespace {
struct Message
{
    QString context;
    QString source;
    QString translation;
    bool finished;
};

QList<Message> readTranslationSource(const QByteArray &xml)
{
    QList<Message> messages;
    QXmlStreamReader reader(xml);
    QString context;
    Message message {};
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (reader.name() == QLatin1String("name")) {
            context = reader.readElementText();
        } else if (reader.name() == QLatin1String("source")) {
            message = Message {context, reader.readElementText(), QString(), false};
        } else if (reader.name() == QLatin1String("translation")) {
            message.finished = reader.attributes().value(QLatin1String("type")).isEmpty();
            message.translation = reader.readElementText(QXmlStreamReader::IncludeChildElements);
            messages << message;
        }
    }
    return messages;
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
    void underscoredKeyWinsOverTheSystem();
    void everyTextOfTheCodeHasAFinishedTranslation_data();
    void everyTextOfTheCodeHasAFinishedTranslation();
    void keysShownByNameHaveATranslation_data();
    void keysShownByNameHaveATranslation();
    void translateTakesAHyphenatedLanguage();
    void settingsFileNamesTheLanguage_data();
    void settingsFileNamesTheLanguage();
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
    QVERIFY(!csv.contains(QLatin1String("BTN_")));
    QCOMPARE(QCoreApplication::translate("QPlatformTheme", "Cancel"), shown.at(4));
}

void LanguageTest::underscoredKeyWinsOverTheSystem()
{
    QCOMPARE(LanguageContext::availableLanguages(),
             QStringList({QStringLiteral("en_US"), QStringLiteral("ru_RU")}));
    QCOMPARE(LanguageContext::setLanguage(QStringLiteral("ru_RU")), QStringLiteral("ru_RU"));
    QCOMPARE(QCoreApplication::translate("Generic", "BTN_Pedal_Left"), QStringLiteral("л.нога"));
    QCOMPARE(QCoreApplication::translate("MainWindow", "Сценарии"), QStringLiteral("Сценарии"));
}

void LanguageTest::everyTextOfTheCodeHasAFinishedTranslation_data()
{
    QTest::addColumn<QString>("language");
    QTest::newRow("Russian") << QStringLiteral("ru_RU");
    QTest::newRow("English") << QStringLiteral("en_US");
}

// lupdate reads the code into a copy of the file in the repository: a text that came in new,
// or was left unfinished, has no translation yet.
void LanguageTest::everyTextOfTheCodeHasAFinishedTranslation()
{
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

    const QList<Message> messages = readTranslationSource(TestFiles::read(fresh));
    QVERIFY(messages.size() > 100);
    const QRegularExpression cyrillic(QStringLiteral("\\p{Cyrillic}"));
    QStringList missing;
    for (const Message &message : messages) {
        const bool stillRussian =
            language == QLatin1String("en_US") && message.translation.contains(cyrillic);
        if (!message.finished || message.translation.isEmpty() || stillRussian)
            missing << message.context + QStringLiteral(" \"") + message.source
                    + (stillRussian ? QStringLiteral("\": still Russian") : QStringLiteral("\""));
    }
    QVERIFY2(missing.isEmpty(),
             qPrintable(name
                        + QStringLiteral(" lacks, after `cmake --build build --target "
                                         "lupdate` fill in:\n")
                        + missing.join(QLatin1Char('\n'))));
}

void LanguageTest::keysShownByNameHaveATranslation_data()
{
    everyTextOfTheCodeHasAFinishedTranslation_data();
}

// Views translate keys they read at run time, which lupdate can't see in the code: the
// vocabulary, and the names, categories, affixes and choices of the settings forms.
void LanguageTest::keysShownByNameHaveATranslation()
{
    QFETCH(QString, language);
    QTranslator translator;
    QVERIFY(
        translator.load(QStringLiteral(":/resources/translations/Tarvelo_%1.qm").arg(language)));
    QStringList missing;
    const auto need = [&](const char *context, const QString &key) {
        if (translator.translate(context, key.toUtf8().constData()).isEmpty())
            missing << QLatin1String(context) + QLatin1Char(' ') + key;
    };
    const QMetaEnum stimuli = QMetaEnum::fromType<TarveloCommon::Stimulus>();
    for (int i = 0; i < stimuli.keyCount(); ++i)
        need("Stimulus", QLatin1String(stimuli.key(i)));
    for (int button = TarveloCommon::BTN_Green; button < TarveloCommon::BTN_None; ++button)
        need("Generic", QLatin1String(QMetaEnum::fromType<TarveloCommon::Button>().key(button)));

    TarveloSettings settings;
    TarveloUser user;
    for (NTSettings *object : QList<NTSettings *> {&settings, &user}) {
        for (const AbstractMetaDescription *property : object->metaDescriptor()->getProperties()) {
            if (!property->visible())
                continue;
            for (const QString &text :
                 {property->name(), property->category(), property->suffix(), property->prefix()}) {
                if (!text.isEmpty() && !text.startsWith(QLatin1String("!-")))
                    need("Generic", text);
            }
            const QMetaEnum choices = property->enumerator();
            for (int i = 0; property->isEnumType() && i < choices.keyCount(); ++i)
                need(choices.name(), QLatin1String(choices.key(i)));
        }
    }
    QVERIFY2(missing.isEmpty(), qPrintable(missing.join(QLatin1Char('\n'))));
}

void LanguageTest::translateTakesAHyphenatedLanguage()
{
    QCOMPARE(LanguageContext::translate(QStringLiteral("Generic"), QStringLiteral("BTN_Blue"),
                                        QStringLiteral("ru-RU")),
             QStringLiteral("син."));
    QCOMPARE(LanguageContext::translate(QStringLiteral("TarveloSessionWidget"),
                                        QStringLiteral("Экспорт"), QStringLiteral("en-US")),
             QStringLiteral("Export"));
    QCOMPARE(LanguageContext::translate(QStringLiteral("Generic"), QStringLiteral("BTN_Blue"),
                                        QStringLiteral("de-DE")),
             QStringLiteral("BTN_Blue"));
    const QMap<QString, QString> both {{QStringLiteral("en_US"), QStringLiteral("white")},
                                       {QStringLiteral("ru_RU"), QStringLiteral("бел.")}};
    QCOMPARE(LanguageContext::multilingualTranslate(QStringLiteral("Generic"),
                                                    QStringLiteral("BTN_White")),
             both);
}

void LanguageTest::settingsFileNamesTheLanguage_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("language");
    QTest::newRow("English") << QByteArray("<Settings><Language>en_US</Language></Settings>")
                             << "en_US";
    QTest::newRow("Russian") << QByteArray("<Settings><Language>ru_RU</Language></Settings>")
                             << "ru_RU";
    QTest::newRow("both: English wins")
        << QByteArray("<Language>ru_RU</Language><Language>en_US</Language>") << "en_US";
}

void LanguageTest::settingsFileNamesTheLanguage()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, language);
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("Settings.xml"));
    QVERIFY(TestFiles::write(path, content));
    QCOMPARE(LanguageContext::AutoDetectLanguage(path), language);
}

QTEST_GUILESS_MAIN(LanguageTest)
#include "tst_language.moc"
