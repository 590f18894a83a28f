// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "Events.h"

#include "tests/Support.h"

namespace Attack {
namespace {

class WidgetWorld : public World
{
public:
    void play(const Event &event) override
    {
        if (event.kind == 0) {
            m_box.slotUpdate();
            m_count++;
        }
    }
    QString wrong() override { return {}; }

private:
    OpenDrawing m_drawing{KcHost::newDrawing()};
    OvCc::LayerComboBox m_box;
    int m_count = 0;
};

} // namespace

WorldKind widgets()
{
    return {{{"update", 1}, {"nothing", 2}},
            [] { return std::unique_ptr<World>(std::make_unique<WidgetWorld>()); }};
}

} // namespace Attack
