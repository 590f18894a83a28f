// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <KcHost/KcHost.h>
#include <OvCustomControl/OvCustomControl.h>

#include <QApplication>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPointer>
#include <QProcess>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>
#include <QWindow>

#include <algorithm>
#include <functional>
#include <memory>
#include <numeric>
#include <vector>

/// Makes a drawing the working one for as long as this lives; in the end no object may be open.
class OpenDrawing
{
public:
    explicit OpenDrawing(std::unique_ptr<KcDbDatabase> drawing)
        : m_drawing(std::move(drawing))
    {
        KcHost::setWorkingDatabase(m_drawing.get());
    }
    ~OpenDrawing()
    {
        KcHost::setWorkingDatabase(nullptr);
        KcHost::setLayerTableChangesHandler(nullptr);
        KcHost::setLayerModifiedHandler(nullptr);
        QCOMPARE(KcHost::openObjectCount(), 0);
    }
    Q_DISABLE_COPY(OpenDrawing)

    KcDbDatabase &operator*() const { return *m_drawing; }

private:
    std::unique_ptr<KcDbDatabase> m_drawing;
};

/// A drawing with layer "0" and @p names.
inline std::unique_ptr<KcDbDatabase> drawingWithLayers(const QStringList &names)
{
    auto drawing = KcHost::newDrawing();
    for (const QString &name : names)
        KcHost::addLayer(*drawing, name);
    return drawing;
}

inline void addNumberedLayers(KcDbDatabase &drawing, int count)
{
    for (int number = 0; number < count; ++number)
        KcHost::addLayer(drawing, QStringLiteral("Layer%1").arg(number, 3, 10, QChar('0')));
}

inline void sortByName(QList<QStringList> &rows)
{
    std::sort(rows.begin(), rows.end(), [](const QStringList &one, const QStringList &other) {
        return one[OvCc::NameColumn] < other[OvCc::NameColumn];
    });
}

/// The layers of the working drawing as the rows of the layer table, sorted by name.
inline QList<QStringList> layerRows()
{
    QList<QStringList> rows;
    OvLayerUtility().getAllLayerDate(rows);
    sortByName(rows);
    return rows;
}

inline QPixmap statusImage(const char *name)
{
    return OvCc::loadImage(QStringLiteral(":/core_cc%1.bmp").arg(QLatin1String(name)));
}

inline QPixmap shownOn(const QPushButton *button)
{
    return button->icon().pixmap(button->iconSize());
}

inline void showOnScreen(QWidget &widget)
{
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget));
}

/// Has the pieces that @p make returns destroyed in every order; those that went with another one
/// are passed over. After each one, @p goOn has those that are left go on without it.
template <class Make>
void destroyInEveryOrder(Make make, const std::function<void()> &goOn = nullptr)
{
    std::vector<int> order(make().size());
    std::iota(order.begin(), order.end(), 0);
    do {
        const QList<QPointer<QObject>> pieces = make();
        for (const int piece : order) {
            delete pieces.at(piece);
            if (goOn)
                goOn();
        }
    } while (std::next_permutation(order.begin(), order.end()));
}

/// Mouse events as the window system sends them, so that a popup in between gets its part of them.
/// A move may hold the left button, which QTest::mouseMove() does not.
inline void mouse(QEvent::Type type, const QWidget *widget, QPoint pos,
                  Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers modifiers = {})
{
    const QPoint inWindow = widget->mapTo(widget->window(), pos);
    const bool isMove = type == QEvent::MouseMove;
    QMouseEvent event(type, inWindow, inWindow, widget->mapToGlobal(pos),
                      isMove ? Qt::NoButton : button,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : button, modifiers);
    QApplication::sendEvent(widget->window()->windowHandle(), &event);
}

inline void click(const QWidget *widget, QPoint pos)
{
    mouse(QEvent::MouseButtonPress, widget, pos);
    mouse(QEvent::MouseButtonRelease, widget, pos);
}

inline void click(const QWidget *widget)
{
    click(widget, widget->rect().center());
}

inline void typeKeys(const QWidget *widget, std::initializer_list<Qt::Key> keys)
{
    for (const Qt::Key key : keys)
        QTest::keyClick(widget->window()->windowHandle(), key);
}

/// Turns of the wheel as the window system sends them: a widget that has no use for one passes it on.
inline void wheel(QWidget *widget, std::initializer_list<int> turns)
{
    const QPoint center = widget->rect().center();
    for (const int turn : turns) {
        QWheelEvent event(center, widget->mapToGlobal(center), {}, {0, turn}, Qt::NoButton, {},
                          Qt::NoScrollPhase, false);
        QSpontaneKeyEvent::setSpontaneous(&event);
        QCoreApplication::instance()->notify(widget, &event);
    }
}

/// What a table, a panel or a link tells of properties that the user wants layers to have.
class Wishes
{
public:
    explicit Wishes(QObject &sender)
    {
        for (const char *signal : {SIGNAL(colorRequested(QStringList, QColor)),
                                   SIGNAL(linetypeRequested(QStringList, QString)),
                                   SIGNAL(lineWeightRequested(QStringList, int)),
                                   SIGNAL(descriptionRequested(QStringList, QString)),
                                   SIGNAL(mergeRequested(QStringList, QString))})
            m_spies.push_back(std::make_unique<QSignalSpy>(&sender, signal));
    }

    /// The arguments of what was told since the last call of this.
    QList<QVariantList> take()
    {
        QList<QVariantList> calls;
        for (const auto &spy : m_spies) {
            calls += *spy;
            spy->clear();
        }
        return calls;
    }

private:
    std::vector<std::unique_ptr<QSignalSpy>> m_spies;
};

inline QByteArray fileContent(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// What a script of the tests prints, as JSON; an empty object if it fails.
inline QJsonObject python(const QString &script, const QStringList &arguments = {})
{
    QProcess python;
    python.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    python.start(QStringLiteral("/usr/bin/python3"),
                 QStringList{QStringLiteral(OVCC_SOURCE_DIR "/tests/") + script} + arguments);
    if (!python.waitForFinished(120000) || python.exitCode() != 0)
        return {};
    return QJsonDocument::fromJson(python.readAllStandardOutput()).object();
}

inline QJsonObject ezdxf(const QString &script, const QStringList &arguments)
{
    return python("ezdxf/" + script, arguments);
}
