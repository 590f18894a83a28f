// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#include "viewer/canvas/DrawingLoader.h"

#include <KcHost/KcHost.h>
#include <OvCustomControl/ColorText.h>
#include <OvCustomControl/LayerState.h>
#include <OvCustomControl/Platform.h>

#include <QGuiApplication>
#include <QTemporaryDir>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <random>
#include <thread>

#include <unistd.h>

using K = OvKernel32;

namespace {

std::atomic<int> finds, jobsDone;

std::wstring pathOf(const std::wstring &name)
{
    static const QTemporaryDir folder;
    static const std::wstring path = folder.path().toStdWString() + L'/';
    return path + name;
}

/// What holds when a thread has done it, with a number that is its own at the time.
constexpr std::pair<const char *, bool (*)(int number)> jobs[] = {
        {"each thread reads back a key of its own in one file",
         [](int number) {
             const std::wstring file = pathOf(L"shared.ini"), key = std::to_wstring(number % 8),
                                value = std::to_wstring(number);
             wchar_t read[20];
             return K::writePrivateProfileString(L"a", key.c_str(), value.c_str(), file.c_str())
                    && K::getPrivateProfileString(L"a", key.c_str(), L"", read, 20, file.c_str())
                    && read == value;
         }},
        {"a file is written and goes once, with an error of its own the second time",
         [](int number) {
             const std::wstring name = pathOf(std::to_wstring(number));
             K::Dword count = 0;
             const K::Handle file = K::createFile(name.c_str(), K::GenericWrite, 0, nullptr,
                                                  K::CreateAlways, 0, 0);
             return K::writeFile(file, "abc", 3, &count, nullptr) && K::closeHandle(file)
                    && K::deleteFile(name.c_str()) && !K::deleteFile(name.c_str())
                    && K::getLastError() == K::ErrorFileNotFound;
         }},
        {"code pages convert, and numbers are read",
         [](int number) {
             constexpr K::Dword pages[] = {65001, 1252, 932, 1251};
             const K::Dword page = pages[number % 4];
             wchar_t wide[8];
             char bytes[8];
             return K::wideCharToMultiByte(page, 0, L"ab", -1, bytes, 8, nullptr, nullptr) == 3
                    && K::multiByteToWideChar(page, 0, bytes, -1, wide, 8) == 3
                    && K::wtof(L"1.5") == 1.5;
         }},
        {"collections hold texts that share what is in them",
         [](int number) {
             static const CString shared(L"shared");
             CStringList list;
             CMapStringToString map;
             for (int place = 0; place < 20; ++place) {
                 const CString text = shared + std::to_wstring(number + place).c_str();
                 list.AddTail(text);
                 map.SetAt(text, list.GetTail());
             }
             return list.GetCount() == 20 && map.GetCount() == 20;
         }},
        {"a copy of a state is another state, and a colour comes back",
         [](int number) {
             static const OvCc::LayerState shared = [] {
                 OvCc::LayerState state;
                 state.insert("a", {});
                 return state;
             }();
             OvCc::LayerState state = shared;
             state.insert(QString::number(number), {});
             const OvCc::NamedColor color{"red", QColor(255, 0, 0)};
             return OvCc::LayerState::fromJson(state.toJson()) == state
                    && shared.names().size() == 1
                    && OvCc::colorOfText(OvCc::colorText(color)).color == color.color;
         }},
        {"as many drawings are read as there are threads, some of them as the viewer does",
         [](int number) {
             const QString file(OVCC_SOURCE_DIR "/viewer/sample/gardenhouse.dxf");
             QString error;
             return number % 2 ? Tessa::readDrawing(file, error) != nullptr
                               : KcHost::readDrawing(file, &error) && KcHost::newDrawing();
         }},
};

} // namespace

int main(int argc, char **argv)
{
    const auto now = std::chrono::steady_clock::now;
    const auto end = now() + std::chrono::seconds(argc > 1 ? QByteArray(argv[1]).toInt() : 20);
    const int seed = argc > 2 ? QByteArray(argv[2]).toInt() : ::getpid();
    std::printf("seed %d\n", seed);
    const QGuiApplication application(argc, argv);
    std::thread threads[4];
    for (int thread = 0; thread < 4; ++thread) {
        threads[thread] = std::thread([=] {
            std::minstd_rand random(unsigned(seed + thread + 1));
            for (int number = thread; now() < end; number += 8, ++jobsDone) {
                const auto &[outcome, holds] = jobs[random() % std::size(jobs)];
                if (!holds(number) && finds++ < 10)
                    std::printf("It does not hold: %s.\n", outcome);
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    std::printf("attack-threads: %d jobs, %d finds\n", int(jobsDone), int(finds));
    return finds > 0;
}
