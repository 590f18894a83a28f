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
#include <vector>

using K = OvKernel32;

namespace {

std::atomic<int> finds, jobsDone;
const std::wstring &folder()
{
    static const QTemporaryDir temporary;
    static const std::wstring path = temporary.path().toStdWString();
    return path;
}

void require(bool holds, const char *what)
{
    if (!holds && finds++ < 10)
        std::printf("It does not hold: %s.\n", what);
}

/// One file for all threads, each with a key of its own.
void writeProfile(int number)
{
    const std::wstring file = folder() + L"/shared.ini", key = std::to_wstring(number % 8);
    const std::wstring value = std::to_wstring(number);
    wchar_t buffer[20];
    require(K::writePrivateProfileString(L"a", key.c_str(), value.c_str(), file.c_str()),
            "it writes");
    K::getPrivateProfileString(L"a", key.c_str(), L"", buffer, 20, file.c_str());
    require(buffer == value, "each thread reads what it has written");
}

void writeFile(int number)
{
    const std::wstring name = folder() + L"/" + std::to_wstring(number);
    K::Dword count = 0;
    const K::Handle file =
            K::createFile(name.c_str(), K::GenericWrite, 0, nullptr, K::CreateAlways, 0, 0);
    require(K::writeFile(file, "abc", 3, &count, nullptr) && K::closeHandle(file),
            "a file is written");
    require(K::deleteFile(name.c_str()) && !K::deleteFile(name.c_str()), "a file goes once");
    require(K::getLastError() == K::ErrorFileNotFound, "each thread has its last error");
}

void convert(int number)
{
    static constexpr K::Dword pages[] = {65001, 1252, 932, 1251};
    wchar_t wide[8];
    char bytes[8];
    require(K::wideCharToMultiByte(pages[number % 4], 0, L"ab", -1, bytes, 8, nullptr, nullptr) == 3
                    && K::multiByteToWideChar(pages[number % 4], 0, bytes, -1, wide, 8) == 3,
            "code pages convert");
    require(K::wtof(L"1.5") == 1.5, "a number is read");
}

void collect(int number)
{
    static const CString shared(L"shared");
    CStringList list;
    CMapStringToString map;
    for (int place = 0; place < 20; ++place) {
        const CString text = shared + std::to_wstring(number + place).c_str();
        list.AddTail(text);
        map.SetAt(text, list.GetTail());
    }
    require(list.GetCount() == 20 && map.GetCount() == 20, "collections hold it");
}

/// Copies share what is in them.
void keepState(int number)
{
    static const OvCc::LayerState shared = [] {
        OvCc::LayerState state;
        state.insert("a", {});
        return state;
    }();
    OvCc::LayerState state = shared;
    state.insert(QString::number(number), {});
    require(OvCc::LayerState::fromJson(state.toJson()) == state && shared.names().size() == 1,
            "a state");
    const OvCc::NamedColor color{"red", QColor(255, 0, 0)};
    require(OvCc::colorOfText(OvCc::colorText(color)).color == color.color, "a colour");
}

/// As many drawings as threads, one of them as the viewer reads it.
void readDrawing(int number)
{
    const QString file(OVCC_SOURCE_DIR "/viewer/sample/gardenhouse.dxf");
    QString error;
    if (number % 2)
        require(Tessa::readDrawing(file, error) != nullptr, "a drawing is shown");
    else
        require(KcHost::readDrawing(file, &error) && KcHost::newDrawing(), "a drawing is read");
}

constexpr void (*jobs[])(int) = {writeProfile, writeFile, convert, collect, keepState, readDrawing};

} // namespace

int main(int argc, char **argv)
{
    const auto now = std::chrono::steady_clock::now;
    const auto end = now() + std::chrono::seconds(argc > 1 ? std::atoi(argv[1]) : 20);
    const int seed = argc > 2 ? std::atoi(argv[2]) : int(now().time_since_epoch().count() % 100000);
    std::printf("seed %d\n", seed);
    const QGuiApplication application(argc, argv);
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([=] {
            std::minstd_rand random(unsigned(seed + thread + 1));
            for (int number = thread; now() < end; number += 8, ++jobsDone)
                jobs[random() % std::size(jobs)](number);
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    std::printf("attack-threads: %d jobs, %d finds\n", int(jobsDone), int(finds));
    return finds > 0;
}
