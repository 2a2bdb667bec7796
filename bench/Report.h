#pragma once

#include <QString>
#include <QStringList>
#include <vector>

// The one table the bench prints: a row per figure, with what it is compared with,
// its budget and whether the budget is kept.
class Report {
public:
    enum class Verdict { Kept, Missed, NoBudget, Failed };

    struct Row {
        QString number;
        QString measure;
        QString value;
        QString comparedWith;
        QString budget;
        Verdict verdict = Verdict::NoBudget;
    };

    void add(Row row) { rows_.push_back(std::move(row)); }
    // A measurement that could not be taken: shown in the table as failed.
    void fail(const QString &number, const QString &measure, const QString &why);
    void note(const QString &text) { notes_.append(text); }

    void print() const;
    // True when no budget was missed and no measurement failed.
    bool allKept() const;

private:
    std::vector<Row> rows_;
    QStringList notes_;
};

// Numbers as the table shows them.
QString formatMs(double ms);
QString formatUs(double us); // in milliseconds from 1 ms on
QString formatPercent(double fraction);
QString formatRatio(double ratio);
QString formatCount(double count);
