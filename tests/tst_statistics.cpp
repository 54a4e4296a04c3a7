#include "SessionFixtures.h"
#include "foundation/Statistics.h"
#include "session/SessionSummary.h"

#include <QRandomGenerator>
#include <QtTest>

#include <cmath>
#include <limits>
#include <memory>
#include <numeric>

using namespace SessionFixtures;

Q_DECLARE_METATYPE(SessionStep::Outcome)

namespace {
bool near(double actual, double expected)
{
    return qAbs(actual - expected) <= 1e-12 * qMax(1.0, qAbs(expected));
}
} // namespace

class StatisticsTest : public QObject
{
    Q_OBJECT
private slots:
    void stepsAreClassedMissedBeforeLateBeforeError_data();
    void stepsAreClassedMissedBeforeLateBeforeError();
    void stageCountsAndValuesCoverEveryStep();
    void oneStepStageHasNoSpread();
    void emptyStageIsAllZero();
    void runningValuesMatchAFullRecomputation_data();
    void runningValuesMatchAFullRecomputation();
    void m_d_ckoOnKnownLists_data();
    void m_d_ckoOnKnownLists();
    void m_d_ckoAgreesWithAnIndependentTwoPassComputation();
    void sumOfNothingIsZero();
    void roundHalfUp_data();
    void roundHalfUp();
    void summaryOfTheReportSessionByHand();
    void summaryCountsHiddenRowsButNotUnnamedButtons();
    void summaryOfOneStageHasNoSpread();
};

void StatisticsTest::stepsAreClassedMissedBeforeLateBeforeError_data()
{
    QTest::addColumn<int>("b");
    QTest::addColumn<int>("b2");
    QTest::addColumn<bool>("v");
    QTest::addColumn<int>("r");
    QTest::addColumn<int>("t");
    QTest::addColumn<SessionStep::Outcome>("outcome");
    QTest::newRow("invalid time wins over late and wrong")
        << 1 << 2 << false << 900 << 500 << SessionStep::Missed;
    QTest::newRow("invalid time with the right control")
        << 2 << 2 << false << 100 << 500 << SessionStep::Missed;
    QTest::newRow("late wins over wrong control")
        << 1 << 2 << true << 501 << 500 << SessionStep::Late;
    QTest::newRow("late with the right control")
        << 2 << 2 << true << 501 << 500 << SessionStep::Late;
    QTest::newRow("wrong control in time") << 1 << 2 << true << 499 << 500 << SessionStep::Error;
    QTest::newRow("equal to the allowed time is in time")
        << 2 << 2 << true << 500 << 500 << SessionStep::Correct;
    QTest::newRow("unnamed control is an error")
        << 10 << 2 << true << 100 << 500 << SessionStep::Error;
    QTest::newRow("nothing required and nothing used")
        << 9 << 9 << true << 100 << 500 << SessionStep::Correct;
    QTest::newRow("negative allowed time makes any reaction late")
        << 2 << 2 << true << 0 << -1 << SessionStep::Late;
}

void StatisticsTest::stepsAreClassedMissedBeforeLateBeforeError()
{
    QFETCH(int, b);
    QFETCH(int, b2);
    QFETCH(bool, v);
    QFETCH(int, r);
    QFETCH(int, t);
    QFETCH(SessionStep::Outcome, outcome);
    SessionStep step;
    step.b = b;
    step.b2 = b2;
    step.v = v;
    step.r = r;
    step.t = t;
    QCOMPARE(step.outcome(), outcome);

    SessionStage stage;
    stage.addStep(new SessionStep(step));
    const int counts[] = {stage.correctCount(), stage.lateCount(), stage.errorCount(),
                          stage.missedCount()};
    for (int kind = 0; kind < 4; ++kind)
        QCOMPARE(counts[kind], kind == outcome ? 1 : 0);
}

void StatisticsTest::stageCountsAndValuesCoverEveryStep()
{
    // Correct 0.2 s, late 0.9 s, missed 0.35 s (a -350 on the wire), error 0.5 s.
    const std::unique_ptr<SessionStage> s(
        stage(4, 4, QString(),
              {step(0, 0, true, 200, 800), step(0, 0, true, 900, 800), step(5, 9, false, 350, 900),
               step(1, 0, true, 500, 900)}));
    QCOMPARE(s->correctCount(), 1);
    QCOMPARE(s->lateCount(), 1);
    QCOMPARE(s->missedCount(), 1);
    QCOMPARE(s->errorCount(), 1);
    QVERIFY(near(s->speedStep(), 0.85));
    // Every reaction enters M, the missed one too: (0.2 + 0.9 + 0.35 + 0.5) / 4.
    QVERIFY(near(s->reactionMean(), 0.4875));
    // Deviations -0.2875, 0.4125, -0.1375, 0.0125; squares add to 0.271875; / 3.
    QVERIFY(near(s->reactionVariance(), 0.271875 / 3));
    QVERIFY(near(s->reactionSigma(), std::sqrt(0.271875 / 3)));
}

void StatisticsTest::oneStepStageHasNoSpread()
{
    const std::unique_ptr<SessionStage> s(stage(1, 1, QString(), {step(2, 4, true, 600, 500)}));
    QCOMPARE(s->reactionMean(), 0.6);
    QCOMPARE(s->speedStep(), 0.5);
    QVERIFY(std::isnan(s->reactionVariance()));
    QVERIFY(std::isnan(s->reactionSigma()));
}

void StatisticsTest::emptyStageIsAllZero()
{
    const std::unique_ptr<SessionStage> s(stage(3, 5, QString(), {}));
    QCOMPARE(s->speedStep(), 0.0);
    QCOMPARE(s->reactionMean(), 0.0);
    QCOMPARE(s->reactionVariance(), 0.0);
    QCOMPARE(s->reactionSigma(), 0.0);
    QCOMPARE(s->correctCount() + s->lateCount() + s->errorCount() + s->missedCount(), 0);
}

void StatisticsTest::runningValuesMatchAFullRecomputation_data()
{
    QTest::addColumn<quint32>("seed");
    QTest::addColumn<int>("maxReaction");
    QTest::newRow("reaction times") << 1u << 2000;
    QTest::newRow("long stage") << 2u << 5000;
    QTest::newRow("huge values from a garbled box") << 3u << std::numeric_limits<int>::max();
    QTest::newRow("equal reactions") << 4u << 1;
}

// After every step the stage's figures are those of a pass over all its steps: counts and the
// means to the last bit, D and sigma as close as two ways of adding allow.
void StatisticsTest::runningValuesMatchAFullRecomputation()
{
    QFETCH(quint32, seed);
    QFETCH(int, maxReaction);
    QRandomGenerator random(seed);
    SessionStage stage;
    QList<double> reactions;
    double allowed = 0;
    int counts[4] = {};
    for (int i = 0; i < 300; ++i) {
        auto *s = step(int(random.bounded(18)), int(random.bounded(11)), random.bounded(8) != 0,
                       int(random.bounded(maxReaction)), int(random.bounded(1, 3000)));
        ++counts[s->outcome()];
        reactions << s->r / 1000.0;
        allowed += s->t / 1000.0;
        stage.addStep(s);

        double m, d, cko;
        m_d_cko(reactions, &m, &d, &cko);
        QCOMPARE(stage.correctCount(), counts[SessionStep::Correct]);
        QCOMPARE(stage.lateCount(), counts[SessionStep::Late]);
        QCOMPARE(stage.errorCount(), counts[SessionStep::Error]);
        QCOMPARE(stage.missedCount(), counts[SessionStep::Missed]);
        QVERIFY(stage.speedStep() == allowed / reactions.size());
        QVERIFY(stage.reactionMean() == m);
        if (i == 0) {
            QVERIFY(std::isnan(stage.reactionVariance()) && std::isnan(stage.reactionSigma()));
            continue;
        }
        // Relative to the squares' scale: the spread may be tiny beside large reactions.
        const double scale = m * m + d;
        QVERIFY(qAbs(stage.reactionVariance() - d) <= 1e-13 * scale);
        QVERIFY(qAbs(stage.reactionSigma() - cko) <= 1e-6 * std::sqrt(scale));
    }
}

void StatisticsTest::m_d_ckoOnKnownLists_data()
{
    QTest::addColumn<QList<double>>("values");
    QTest::addColumn<double>("m");
    QTest::addColumn<double>("d");
    const double nan = std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("none") << QList<double> {} << 0.0 << 0.0;
    QTest::newRow("one") << QList<double> {2.5} << 2.5 << nan;
    QTest::newRow("two") << QList<double> {1, 3} << 2.0 << 2.0;
    QTest::newRow("sample variance") << QList<double> {1, 2, 3, 4} << 2.5 << 5.0 / 3;
    QTest::newRow("constant") << QList<double> {7, 7, 7} << 7.0 << 0.0;
    QTest::newRow("a NaN spreads") << QList<double> {1, nan} << nan << nan;
}

void StatisticsTest::m_d_ckoOnKnownLists()
{
    QFETCH(QList<double>, values);
    QFETCH(double, m);
    QFETCH(double, d);
    // Outputs are written whatever they held before.
    double outM = -1, outD = -1, outCko = -1;
    m_d_cko(values, &outM, &outD, &outCko);
    QVERIFY(std::isnan(m) ? std::isnan(outM) : near(outM, m));
    QVERIFY(std::isnan(d) ? std::isnan(outD) : near(outD, d));
    QVERIFY(std::isnan(d) ? std::isnan(outCko) : near(outCko, std::sqrt(d)));
}

void StatisticsTest::m_d_ckoAgreesWithAnIndependentTwoPassComputation()
{
    QRandomGenerator random(20240305);
    for (int round = 0; round < 200; ++round) {
        const int n = 2 + int(random.bounded(300));
        QList<double> values;
        std::vector<long double> wide;
        for (int i = 0; i < n; ++i) {
            // Reaction times as the stage makes them: whole ms in seconds.
            const double value = int(random.bounded(5000)) / 1000.0;
            values << value;
            wide.push_back(value);
        }
        const long double mean = std::accumulate(wide.begin(), wide.end(), 0.0L) / n;
        const long double squares =
            std::accumulate(wide.begin(), wide.end(), 0.0L, [mean](long double acc, long double x) {
                return acc + (x - mean) * (x - mean);
            });
        const long double variance = squares / (n - 1);

        double m = 0, d = 0, cko = 0;
        m_d_cko(values, &m, &d, &cko);
        QVERIFY2(
            qAbs(m - double(mean)) <= 1e-12 * qMax(1.0, double(mean)),
            qPrintable(QStringLiteral("n=%1 m=%2 reference=%3").arg(n).arg(m).arg(double(mean))));
        QVERIFY2(qAbs(d - double(variance)) <= 1e-11 * qMax(1.0, double(variance)),
                 qPrintable(
                     QStringLiteral("n=%1 d=%2 reference=%3").arg(n).arg(d).arg(double(variance))));
        QCOMPARE(cko, std::sqrt(d));
    }
}

void StatisticsTest::sumOfNothingIsZero()
{
    QCOMPARE(sum({}), 0.0);
    QCOMPARE(sum({1.5, 2.25, -1}), 2.75);
}

void StatisticsTest::roundHalfUp_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<int>("rounded");
    QTest::newRow("zero") << 0.0 << 0;
    QTest::newRow("whole") << 6.0 << 6;
    QTest::newRow("just under a half") << 2.4999 << 2;
    QTest::newRow("half goes up") << 2.5 << 3;
    QTest::newRow("negative below a half") << -2.6 << -3;
    QTest::newRow("negative half goes up") << -2.5 << -2;
    QTest::newRow("negative above a half") << -2.4 << -2;
    QTest::newRow("minus a half") << -0.5 << 0;
    QTest::newRow("NaN") << std::numeric_limits<double>::quiet_NaN() << 0;
    QTest::newRow("beyond int") << 1e12 << std::numeric_limits<int>::max();
    QTest::newRow("below int") << -1e12 << std::numeric_limits<int>::min();
}

void StatisticsTest::roundHalfUp()
{
    QFETCH(double, value);
    QFETCH(int, rounded);
    QCOMPARE(::roundHalfUp(value), rounded);
}

void StatisticsTest::summaryOfTheReportSessionByHand()
{
    const std::unique_ptr<TarveloSession> session(reportSession());
    const SessionSummary summary(*session);
    using S = SessionSummary;
    QCOMPARE(summary.column(S::Steps), (QList<double> {3, 1, 0, 2}));
    QCOMPARE(summary.column(S::Correct), (QList<double> {1, 0, 0, 1}));
    QCOMPARE(summary.column(S::Late), (QList<double> {0, 1, 0, 0}));
    QCOMPARE(summary.column(S::Errors), (QList<double> {1, 0, 0, 1}));
    QCOMPARE(summary.column(S::Missed), (QList<double> {1, 0, 0, 0}));
    const QList<double> means = summary.column(S::MeanReaction);
    QCOMPARE(means.size(), 4);
    QVERIFY(near(means[0], 0.8) && near(means[1], 0.6) && means[2] == 0 && near(means[3], 0.55));

    const int sums[] = {6, 2, 1, 2, 1};
    for (int c = 0; c < S::SummedColumnCount; ++c) {
        QCOMPARE(summary.columnSum(S::Column(c)), double(sums[c]));
        QCOMPARE(summary.roundedColumnSum(S::Column(c)), sums[c]);
    }

    // The figures across stages and the reaction matrix of this session are checked cell by
    // cell in its export table.
}

void StatisticsTest::summaryCountsHiddenRowsButNotUnnamedButtons()
{
    TarveloSession session;
    // Stimulus 40 requires nothing (9); the subject used nothing (9) and then control 10.
    SessionStep *nothing = step(40, 9, true, 100, 500);
    SessionStep *unnamed = step(40, 10, true, 100, 500);
    SessionStep *negative = step(1, -1, true, 100, 500);
    session.addStage(stage(0, 3, QString(), {nothing, unnamed, negative}));
    const SessionSummary summary(session);
    QCOMPARE(summary.requiredCounts()[9], 2);
    QCOMPARE(summary.reactionMatrix()[9][9], 1);
    QCOMPARE(summary.requiredCounts()[2], 1);
    for (int j = 0; j < SessionSummary::ButtonSlots; ++j)
        QCOMPARE(summary.reactionMatrix()[2][j], 0);
}

void StatisticsTest::summaryOfOneStageHasNoSpread()
{
    TarveloSession session;
    session.addStage(
        stage(0, 2, QString(), {step(0, 0, true, 100, 500), step(0, 0, true, 300, 500)}));
    const SessionSummary summary(session);
    for (int c = 0; c < SessionSummary::ColumnCount; ++c) {
        const SessionSummary::Figures &f = summary.figures(SessionSummary::Column(c));
        QVERIFY(!std::isnan(f.m));
        QVERIFY(std::isnan(f.d));
        QVERIFY(std::isnan(f.sigma));
    }
}

QTEST_GUILESS_MAIN(StatisticsTest)
#include "tst_statistics.moc"
