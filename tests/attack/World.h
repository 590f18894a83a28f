// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/Support.h"

#include <QMap>
#include <QRandomGenerator>
#include <QTimer>

namespace Attack {

/// Something that happens. The numbers are anything: a world takes them modulo what is there, so that
/// every list of events can be played, and part of one as well.
struct Event
{
    quint32 a;
    quint32 b;
    quint32 c;
};

template <class Values>
auto pick(const Values &list, quint32 number)
{
    return std::begin(list)[number % quint32(std::size(list))];
}

template <class T>
T pick(std::initializer_list<T> list, quint32 number)
{
    return list.begin()[number % list.size()];
}

/// One life: windows, drawings, the host that answers, and what may happen to them; here what may
/// happen in any. A dialog, a menu or a drag that an event begins is answered in its event loop.
class World : public QObject
{
public:
    struct Act
    {
        int weight; ///< how often beside the others
        std::function<void(const Event &)> play;
    };

    World();

    const QMap<QByteArray, Act> &acts() const { return m_acts; }

    /// Called from the event loop, which goes on between two calls. Chance is in the numbers alone.
    virtual void play(const Act &act, const Event &event);

    /// Called now and then, and at the end; closes first what the world itself has left open.
    /// @return what does not hold, with all that is by chance in it in single quotes; empty when all does
    QString wrong();

protected:
    enum class Mode { Idle, Playing, Settling, Saving };

    template <class This>
    void add(const char *name, int weight, void (This::*act)(const Event &))
    {
        m_acts[name] = {weight, [this, act](const Event &event) {
                            (static_cast<This *>(this)->*act)(event);
                        }};
    }

    /// What others do while something asks the user.
    void addBeneath(const QByteArrayList &acts) { m_answersBy += acts; }

    virtual void check() = 0;                    ///< calls expect()
    virtual QWidgetList roots() const = 0;       ///< all there is
    virtual QWidget *root(quint32 number) = 0;   ///< one of them, which is made if need be
    virtual QWidgetList targets(quint32 number); ///< for events while nothing asks
    virtual bool answerItself(QWidget *asked);   ///< @return whether that was an answer

    /// These, if they are children of roots, or roots.
    template <class Widget>
    const QList<Widget *> all() const
    {
        QList<Widget *> found;
        const auto tops = roots();
        for (QWidget *root : tops) {
            if (auto *widget = qobject_cast<Widget *>(root))
                found += widget;
            found += root->findChildren<Widget *>();
        }
        return found;
    }

    static QWidget *asking();
    static QWidgetList shownIn(QWidget *root);
    static QString layerName(quint32 number);
    quint32 number() { return m_random.generate(); }
    int answers() const { return m_answers; } ///< to the event that is played
    Mode mode() const { return m_mode; }
    void expectQuestions(Mode mode);

    QWidget *target(const Event &event);
    using Types = QVector<QEvent::Type>;
    static void send(const QPointer<QWidget> &widget, QPoint at, const Types &types, quint32 keys);
    void gesture(const Event &event, const Types &types);
    void click(const Event &event) { gesture(event, clicked); }
    inline static const Types clicked{QEvent::MouseButtonPress, QEvent::MouseButtonRelease};
    void undo(const Event &event);
    void expect(bool holds, const QString &what);
    void checkLayers();

private:
    void wheel(const Event &event);
    void key(const Event &event);
    void look(const Event &event);
    void layer(const Event &event);
    void answer();
    void checkTable(OvCc::LayerTableWidget &table, const QList<QStringList> &expected);
    void checkBox(OvCc::LayerComboBox &box, const QList<OvCc::LayerItemData> &layers,
                  const QString &current);

    QMap<QByteArray, Act> m_acts;
    QByteArrayList m_answersBy{"click", "click", "click", "click", "click", "key", "key"};
    QRandomGenerator m_random; ///< for the answers to one event
    QTimer m_timer;
    int m_answers = 0;
    Mode m_mode = Mode::Idle;
    QString m_wrong;
};

/// All public widgets on several drawings.
std::unique_ptr<World> makeWidgets();

/// The whole viewer, on drawings in a folder of its own that somebody else writes, too.
std::unique_ptr<World> makeViewer();

} // namespace Attack
