#include "SessionSummary.h"

#include "data/TarveloSession.h"
#include "foundation/Statistics.h"

SessionSummary::SessionSummary(const TarveloSession &session)
{
    const QList<SessionStage *> stages = session.stages();
    for (const SessionStage *stage : stages) {
        m_columns[Steps].append(stage->steps().size());
        m_columns[Correct].append(stage->correctCount());
        m_columns[Late].append(stage->lateCount());
        m_columns[Errors].append(stage->errorCount());
        m_columns[Missed].append(stage->missedCount());
        m_columns[MeanReaction].append(stage->reactionMean());

        for (const SessionStep *step : stage->steps()) {
            // Taken as unsigned, a negative value (which no record of ours holds) falls above
            // the bound instead of indexing in front of the arrays.
            const auto required = unsigned(step->b2);
            const auto used = unsigned(step->b);
            if (required < unsigned(ButtonSlots)) {
                ++m_requiredCounts[required];
                if (used < unsigned(ButtonSlots))
                    ++m_reactionMatrix[required][used];
            }
        }
    }
    for (int column = 0; column < ColumnCount; ++column) {
        Figures &figures = m_figures[column];
        m_d_cko(m_columns[column], &figures.m, &figures.d, &figures.sigma);
    }
}

double SessionSummary::columnSum(Column column) const
{
    return sum(m_columns[column]);
}

int SessionSummary::roundedColumnSum(Column column) const
{
    return roundHalfUp(columnSum(column));
}
