#include "device/TarveloMessage.h"

#include <QSignalSpy>
#include <QtTest>

class MessageTest : public QObject
{
    Q_OBJECT
private slots:
    void chunksGiveTheirMessages_data();
    void chunksGiveTheirMessages();
    void signalFollowsEachMessageInOrder();
    void resetDropsAHalfMessage();
    void everySplitOfAStreamGivesTheSameMessages();
    void invalidUtf8InsideAFrameBecomesReplacementCharacters();
    void overlongFrameIsDroppedAndLoggedOnce();
};

void MessageTest::chunksGiveTheirMessages_data()
{
    QTest::addColumn<QStringList>("chunks");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("two frames in one chunk")
        << QStringList {"{sn=123}{version=1.2}"} << QStringList {"sn=123", "version=1.2"};
    QTest::newRow("frame across two chunks")
        << QStringList {"{sn=12", "3}"} << QStringList {"sn=123"};
    QTest::newRow("closing brace without opening is dropped")
        << QStringList {"abc}{x}"} << QStringList {"x"};
    QTest::newRow("empty frame is a message") << QStringList {"{}"} << QStringList {""};
    QTest::newRow("opening brace inside stays in the text")
        << QStringList {"{a{b}"} << QStringList {"a{b"};
    QTest::newRow("line ends between frames vanish")
        << QStringList {"{a}\r\n{b}\r\n"} << QStringList {"a", "b"};
    QTest::newRow("line ends inside a frame stay")
        << QStringList {"{a\r\nb}"} << QStringList {"a\r\nb"};
    QTest::newRow("chunk without braces outside changes nothing")
        << QStringList {"boot noise", "{x}"} << QStringList {"x"};
    QTest::newRow("text is not trimmed") << QStringList {"{ a }"} << QStringList {" a "};
    QTest::newRow("half frame waits for its end")
        << QStringList {"{sta", "te=1", "", "01}{v"} << QStringList {"state=101"};
    QTest::newRow("noise with stray brace between frames")
        << QStringList {"{a}rst}}\n\x01{b}"} << QStringList {"a", "b"};
}

void MessageTest::chunksGiveTheirMessages()
{
    QFETCH(QStringList, chunks);
    QFETCH(QStringList, expected);
    TarveloMessage splitter;
    QSignalSpy spy(&splitter, &TarveloMessage::messageReceived);
    QStringList returned;
    for (const QString &chunk : qAsConst(chunks))
        returned += splitter.parse(chunk);
    QCOMPARE(returned, expected);
    QStringList signalled;
    for (const QList<QVariant> &arguments : qAsConst(spy))
        signalled << arguments.at(0).toString();
    QCOMPARE(signalled, expected);
}

void MessageTest::signalFollowsEachMessageInOrder()
{
    TarveloMessage splitter;
    QStringList seen;
    connect(&splitter, &TarveloMessage::messageReceived, this,
            [&seen](const QString &msg) { seen << msg; });
    QCOMPARE(splitter.parse(QStringLiteral("{1}{2}{3")), (QStringList {"1", "2"}));
    QCOMPARE(seen, (QStringList {"1", "2"}));
    // Nothing collected is left behind for the next chunk.
    QCOMPARE(splitter.parse(QStringLiteral("}")), QStringList {"3"});
    QCOMPARE(seen, (QStringList {"1", "2", "3"}));
}

void MessageTest::resetDropsAHalfMessage()
{
    TarveloMessage splitter;
    QVERIFY(splitter.parse(QStringLiteral("{sn=12")).isEmpty());
    splitter.reset();
    QCOMPARE(splitter.parse(QStringLiteral("rest}{x}")), QStringList {"x"});
}

void MessageTest::everySplitOfAStreamGivesTheSameMessages()
{
    // Cut at every byte, also inside the characters of a title: they arrive whole.
    const QByteArray stream =
        QStringLiteral(
            "\r\nboot}{iamtarvelo}{sn=240315}\n{version=2.4.1}{}{scriptStarted=Проба}junk"
            "{r=-350;b=10;b2=3;s=3;t=2000;d=1000}{a{b}\r\n{stageAction=+1}")
            .toUtf8();
    const QStringList expected {"iamtarvelo",
                                "sn=240315",
                                "version=2.4.1",
                                "",
                                QStringLiteral("scriptStarted=Проба"),
                                "r=-350;b=10;b2=3;s=3;t=2000;d=1000",
                                "a{b",
                                "stageAction=+1"};
    for (int first = 0; first <= stream.size(); ++first) {
        for (int second = first; second <= stream.size(); second += 7) {
            TarveloMessage splitter;
            QStringList got = splitter.parseBytes(stream.left(first));
            got += splitter.parseBytes(stream.mid(first, second - first));
            got += splitter.parseBytes(stream.mid(second));
            QVERIFY2(got == expected,
                     qPrintable(QStringLiteral("cut at %1 and %2").arg(first).arg(second)));
        }
    }
}

void MessageTest::invalidUtf8InsideAFrameBecomesReplacementCharacters()
{
    TarveloMessage splitter;
    const QStringList got = splitter.parseBytes("\xff{a\xfe\xc3}{b}");
    QCOMPARE(got.size(), 2);
    QCOMPARE(got.at(0), QStringLiteral("a\uFFFD\uFFFD"));
    QCOMPARE(got.at(1), QStringLiteral("b"));
}

void MessageTest::overlongFrameIsDroppedAndLoggedOnce()
{
    static int logged = 0;
    const QtMessageHandler previous = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext &, const QString &) { ++logged; });
    const int max = TarveloMessage::MaxFrameLength;
    const QByteArray stream = '{' + QByteArray(max, 'x') + "}{" + QByteArray(1 << 20, 'y') + "}{z}";
    TarveloMessage splitter;
    QStringList got;
    for (int from = 0; from < stream.size(); from += 1000)
        got << splitter.parseBytes(stream.mid(from, 1000));
    qInstallMessageHandler(previous);
    QCOMPARE(got, (QStringList {QString(max, 'x'), "z"}));
    QCOMPARE(logged, 1);
}

QTEST_GUILESS_MAIN(MessageTest)
#include "tst_message.moc"
