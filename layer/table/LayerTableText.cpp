// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "layer/table/LayerTablePrivate.h"

#include <OvCustomControl/ColorText.h>
#include <OvCustomControl/LayerDelegate.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QPointer>

namespace OvCc {

namespace {

/// As one cell of one line.
QString cellText(QString text)
{
    for (QChar &each : text) {
        if (each == QLatin1Char('\t') || each == QLatin1Char('\n') || each == QLatin1Char('\r'))
            each = QLatin1Char(' ');
    }
    return text;
}

} // namespace

QString LayerTableWidget::Private::shownTitle(const ColumnTraits &column)
{
    return *column.title ? tr(column.title) : QString();
}

/// What the cell of a row says, in words where it is painted.
QString LayerTableWidget::Private::shownText(const ColumnTraits &column, const QString &text)
{
    switch (column.painting) {
    case CellPainting::Picture: {
        const bool isTrue = QVariant(text).toBool();
        const char *word = isTrue ? column.words.whenTrue : column.words.whenFalse;
        return *word ? tr(word) : QString();
    }
    case CellPainting::Color:
        return colorOfText(text).name;
    case CellPainting::LineWeight:
        return LayerDelegate::tr(text.toUtf8().constData());
    case CellPainting::AsByDefault:
    case CellPainting::Text:
    case CellPainting::PaleText:
        break;
    }
    return text;
}

void LayerTableWidget::copySelection()
{
    const QPointer<LayerTableWidget> self(this);
    m_d->editing->finish();
    const QVector<int> places = self ? m_d->selectedRows() : QVector<int>();
    if (places.isEmpty())
        return;
    QVector<QStringList> lines(places.size() + 1);
    for (const ColumnTraits &column : columnTable) {
        // Names are shown in the frozen view in any case.
        if (isColumnHidden(column.column) && m_d->frozen->isColumnHidden(column.column))
            continue;
        lines.first() += Private::shownTitle(column);
        for (int line = 0; line < places.size(); ++line) {
            const QString text = m_d->rows->rows().at(places.at(line)).at(column.column);
            lines[line + 1] += cellText(Private::shownText(column, text));
        }
    }
    QString text;
    for (const QStringList &cells : std::as_const(lines))
        text += cells.join(QLatin1Char('\t')) + QLatin1Char('\n');
    QGuiApplication::clipboard()->setText(text);
}

} // namespace OvCc
