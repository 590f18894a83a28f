// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "../Changes.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUndoStack>

#include <dxflib/dl_creationadapter.h>
#include <dxflib/dl_dxf.h>

#include <cstdlib>
#include <iostream>
#include <optional>

/// @file
/// Changes drawings through the embedded host, and tells what dxflib reads in them. Each line of the
/// standard input is a job, and each line of the output its result; both are JSON.

namespace {

QString text(const std::string &bytes)
{
    return QString::fromLatin1(bytes.data(), int(bytes.size()));
}

/// What dxflib reads of layers and entities, by the number of groups of code 0 before their own. Texts
/// are bytes of the file.
class Reader : public DL_CreationAdapter
{
public:
    static QJsonObject read(const QString &fileName)
    {
        Reader reader;
        DL_Dxf().in(fileName.toStdString(), &reader);
        return reader.m_found;
    }

private:
    void processCodeValuePair(unsigned int code, const std::string &) override
    {
        m_record += code == 0 ? 1 : 0;
    }
    void addLayer(const DL_LayerData &layer) override
    {
        note({{"name", text(layer.name)},
              {"flags", layer.flags & ~5},
              {"freeze", (layer.flags & 1) != 0},
              {"lock", (layer.flags & 4) != 0},
              {"off", getAttributes().getColor() < 0}});
    }
    void addPoint(const DL_PointData &) override { noteEntity(); }
    void addLine(const DL_LineData &) override { noteEntity(); }
    void addXLine(const DL_XLineData &) override { noteEntity(); }
    void addRay(const DL_RayData &) override { noteEntity(); }
    void addArc(const DL_ArcData &) override { noteEntity(); }
    void addCircle(const DL_CircleData &) override { noteEntity(); }
    void addEllipse(const DL_EllipseData &) override { noteEntity(); }
    void addPolyline(const DL_PolylineData &) override { noteEntity(); }
    void addVertex(const DL_VertexData &) override { noteEntity(); }
    void addSpline(const DL_SplineData &) override { noteEntity(); }
    void addInsert(const DL_InsertData &) override { noteEntity(); }
    void addMText(const DL_MTextData &) override { noteEntity(); }
    void addText(const DL_TextData &) override { noteEntity(); }
    void addAttribute(const DL_AttributeData &) override { noteEntity(); }
    void addLeader(const DL_LeaderData &) override { noteEntity(); }
    void addHatch(const DL_HatchData &) override { noteEntity(); }
    void addTrace(const DL_TraceData &) override { noteEntity(); }
    void add3dFace(const DL_3dFaceData &) override { noteEntity(); }
    void addSolid(const DL_SolidData &) override { noteEntity(); }
    void addImage(const DL_ImageData &) override { noteEntity(); }

    void noteEntity() { note({{"layer", text(getAttributes().getLayer())}}); }

    /// By now the record has ended with the head of the next one.
    void note(QJsonObject found)
    {
        const DL_Attributes attributes = getAttributes();
        found["color"] = std::abs(attributes.getColor());
        found["true"] = attributes.getColor24();
        found["weight"] = attributes.getWidth();
        found["type"] = text(attributes.getLinetype());
        m_found[QString::number(m_record - 2)] = found;
    }

    int m_record = 0;
    QJsonObject m_found;
};

QByteArray content(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Takes the steps, several as a group, and writes the drawing; undone it is to be the old one, and
/// redone the new one.
QJsonObject run(const QString &fileName, const QJsonArray &steps, const QString &newName)
{
    QString error;
    QJsonObject result;
    const auto drawing = KcHost::readDrawing(fileName, &error);
    if (!drawing)
        return {{"error", error}};
    KcHost::setWorkingDatabase(drawing.get());
    QJsonArray statuses;
    std::optional<KcHost::UndoGroup> group;
    if (steps.size() > 1)
        group.emplace(*drawing, "Many");
    for (const QJsonValue &step : steps)
        statuses += change(step.toVariant().toStringList());
    group.reset();
    result["statuses"] = statuses;
    const auto written = [&] {
        if (!KcHost::writeDrawing(*drawing, newName, &error))
            result["error"] = error;
        return content(newName);
    };
    QUndoStack *stack = KcHost::undoStack(*drawing);
    const int last = stack->count();
    const QByteArray bytes = written();
    stack->setIndex(0);
    result["undone"] = last < 2 && written() == content(fileName);
    stack->setIndex(last);
    result["redone"] = written() == bytes;
    result["dxflib"] = Reader::read(newName);
    return result;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    for (std::string line; std::getline(std::cin, line);) {
        const QJsonObject job = QJsonDocument::fromJson(QByteArray::fromStdString(line)).object();
        const QString file = job["file"].toString();
        const QJsonObject result =
                job.contains("new") ? run(file, job["steps"].toArray(), job["new"].toString())
                                    : QJsonObject{{"dxflib", Reader::read(file)}};
        std::cout << QJsonDocument(result).toJson(QJsonDocument::Compact).toStdString()
                  << std::endl;
    }
}
