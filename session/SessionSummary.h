#pragma once

#include <QList>

#include <array>

class TarveloSession;

// The session-level figures of one report build: per-stage columns, statistics across the
// stages (a stage is one value whatever its length) and the required/actual control counts
// over every step of every stage. Kept nowhere but in the report made from it.
class SessionSummary
{
public:
    enum Column { Steps, Correct, Late, Errors, Missed, MeanReaction, ColumnCount };
    // Columns Steps to Missed are summed; mean reaction times are not.
    static constexpr int SummedColumnCount = MeanReaction;
    // Buttons 0 to 9 (9 is none). A report value of 10 counts as required but not as used.
    static constexpr int ButtonSlots = 10;

    struct Figures
    {
        double m = 0;
        double d = 0;
        double sigma = 0;
    };
    using ButtonCounts = std::array<int, ButtonSlots>;

    explicit SessionSummary(const TarveloSession &session);

    const QList<double> &column(Column column) const { return m_columns[column]; }
    const Figures &figures(Column column) const { return m_figures[column]; }
    // Σ of a summed column, and the same as the export's integer.
    double columnSum(Column column) const;
    int roundedColumnSum(Column column) const;

    const ButtonCounts &requiredCounts() const { return m_requiredCounts; }
    // Rows are the required control (b2), columns the control used (b).
    const std::array<ButtonCounts, ButtonSlots> &reactionMatrix() const { return m_reactionMatrix; }

private:
    std::array<QList<double>, ColumnCount> m_columns;
    std::array<Figures, ColumnCount> m_figures;
    ButtonCounts m_requiredCounts {};
    std::array<ButtonCounts, ButtonSlots> m_reactionMatrix {};
};
