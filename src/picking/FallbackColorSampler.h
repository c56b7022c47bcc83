#pragma once

#include "picking/FallibleColorSampler.h"

#include <QList>
#include <QStringList>

#include <functional>

// Tries samplers in order: the first that does not fail decides the pick.
// When every one fails, the pick ends as a cancel and one line saying why
// goes to standard output.
class FallbackColorSampler : public ColorSampler
{
    Q_OBJECT

public:
    using Factory = std::function<FallibleColorSampler *(QObject *parent)>;

    FallbackColorSampler(QList<Factory> factories, QObject *parent = nullptr);

    void start() override;

private:
    void startNext();

    QList<Factory> m_factories;
    QStringList m_reasons;
    qsizetype m_next = 0;
};
