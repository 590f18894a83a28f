/// The least that a host does: it opens a drawing, shows a layer combo box and lets it follow.
///
///     embed DRAWING.dxf

#include <KcHost/KcHost.h>
#include <OvCustomControl/LayerComboBox.h>

#include <QApplication>
#include <QTextStream>

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);

    QString error;
    const auto drawing = KcHost::readDrawing(application.arguments().value(1), &error);
    if (!drawing) {
        QTextStream(stderr) << error << '\n';
        return 1;
    }
    KcHost::setWorkingDatabase(drawing.get());

    OvCc::LayerComboBox layers;
    KcHost::setLayerTableChangesHandler([&layers] { layers.slotUpdate(); });
    layers.slotUpdate();
    layers.show();
    return QApplication::exec();
}
