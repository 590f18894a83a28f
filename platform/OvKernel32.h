// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

#include <OvCustomControl/OvccExport.h>

#include <cstddef>
#include <cstdint>

/// What code that grew up on Windows needs of its system, on Linux: functions named after the
/// documented ones, with their parameters, results and error numbers. The widgets use none of it.
///
/// A function that fails returns the documented value and sets the last error, which each thread
/// has for itself; a null pointer, a zero length or an unknown handle is such a failure. Functions
/// may be called in any thread, except that the current folder and the environment belong to the
/// process. Only the wide forms are here; a `wchar_t` is a whole character, and narrow text is UTF-8.
///
/// Paths come with slashes of either kind. Drive "C:" is "/"; another drive "X:" is the folder that
/// the environment variable OVCC_DRIVE_X names, and not found without it; `\\server` is refused. A
/// name that exists is found whatever its case, an exact match first. Paths are returned as Linux
/// has them.
///
/// @ingroup platform
class OVCC_EXPORT OvKernel32
{
public:
    using Bool = std::int32_t;    ///< 0 is false: that a function failed
    using Word = std::uint16_t;   ///< 16 bits
    using Dword = std::uint32_t;  ///< 32 bits
    using Long = std::int32_t;    ///< 32 bits with a sign
    using Handle = std::intptr_t; ///< a file, a search or a module, each for its own functions
    using Function = void (*)();  ///< of a module; to be cast to its own type

    static constexpr Handle invalidHandle = -1;       ///< no file, and no search
    static constexpr Dword invalidDword = 0xffffffff; ///< of file sizes, positions and attributes
    static constexpr Dword infinite = 0xffffffff;     ///< for sleep(), which never returns then
    static constexpr std::size_t truncate = SIZE_MAX; ///< count for strncpyS()

    /// The documented numbers of what can go wrong, as getLastError() tells them.
    enum Error : Dword {
        ErrorSuccess = 0,
        ErrorFileNotFound = 2,
        ErrorPathNotFound = 3,
        ErrorTooManyOpenFiles = 4,
        ErrorAccessDenied = 5,
        ErrorInvalidHandle = 6,
        ErrorNotEnoughMemory = 8,
        ErrorNotSameDevice = 17,
        ErrorNoMoreFiles = 18,
        ErrorWriteProtect = 19,
        ErrorGenFailure = 31,
        ErrorSharingViolation = 32,
        ErrorNotSupported = 50,
        ErrorBadNetPath = 53,
        ErrorFileExists = 80,
        ErrorInvalidParameter = 87,
        ErrorBrokenPipe = 109,
        ErrorDiskFull = 112,
        ErrorInsufficientBuffer = 122,
        ErrorInvalidName = 123,
        ErrorModNotFound = 126,
        ErrorProcNotFound = 127,
        ErrorNegativeSeek = 131,
        ErrorDirNotEmpty = 145,
        ErrorBusy = 170,
        ErrorAlreadyExists = 183,
        ErrorEnvVarNotFound = 203,
        ErrorFilenameExceedsRange = 206,
        ErrorDirectory = 267,
        ErrorMessageNotFound = 317,
        ErrorInvalidFlags = 1004,
        ErrorNoUnicodeTranslation = 1113,
        ErrorIoDevice = 1117
    };

    /// The last error of this thread. A function that succeeds leaves it, unless it says otherwise.
    static Dword getLastError();
    /// Sets the last error of this thread, for whoever asks next.
    static void setLastError(Dword error);

    /// What formatMessage() takes: the second one always, the first one at will.
    enum FormatFlag : Dword {
        FormatMessageIgnoreInserts = 0x200,
        FormatMessageFromSystem = 0x1000
    };

    /// The English text of a system error, ".\r\n" at its end. Other sources and buffers that the
    /// function allocates are not supported; the language is not regarded.
    /// @return the characters written, without the NUL
    static Dword formatMessage(Dword flags, const void *source, Dword message, Dword language,
                               wchar_t *buffer, Dword size, void *arguments);

    // Modules

    /// Loads a library. "foo.dll" also finds foo.so and libfoo.so; a name without a folder is looked
    /// for beside the program first, then where the system looks. Each call needs a freeLibrary().
    /// A module may call this layer while it is being loaded or unloaded.
    /// @return 0 on failure
    static Handle loadLibrary(const wchar_t *name);
    /// Takes back one loadLibrary(). The module is unloaded with its last one; its functions are
    /// gone then.
    static Bool freeLibrary(Handle module);
    /// Functions have names only, no ordinals.
    static Function getProcAddress(Handle module, const char *name);
    /// @param module 0 for the program itself
    /// @return the characters written; @p size and ErrorInsufficientBuffer when it was cut short
    static Dword getModuleFileName(Handle module, wchar_t *buffer, Dword size);

    // Files and folders

    /// What a file is opened for, added up.
    enum Access : Dword { GenericWrite = 0x40000000, GenericRead = 0x80000000 };

    /// Accepted, and not regarded.
    enum Share : Dword { FileShareRead = 1, FileShareWrite = 2, FileShareDelete = 4 };

    /// What createFile() does where there is a file, and where there is none.
    enum Disposition : Dword {
        CreateNew = 1,   ///< makes a file; fails where there is one
        CreateAlways,    ///< makes a file, or empties the one that is there
        OpenExisting,    ///< fails where there is none
        OpenAlways,      ///< makes a file where there is none
        TruncateExisting ///< empties the file; fails where there is none, and without GenericWrite
    };

    /// Where a distance begins.
    enum SeekMethod : Dword { FileBegin, FileCurrent, FileEnd };

    /// What a file is, added up.
    enum Attribute : Dword {
        FileAttributeReadOnly = 1, ///< its owner may not write it
        FileAttributeHidden = 2,   ///< its name begins with a dot
        FileAttributeDirectory = 0x10,
        FileAttributeArchive = 0x20, ///< accepted for a new file, and dropped
        FileAttributeNormal = 0x80
    };

    /// How a file will be read.
    enum FileFlag : Dword {
        FileFlagSequentialScan = 0x08000000, ///< a hint, as is random access
        FileFlagRandomAccess = 0x10000000
    };

    /// Opens or makes a file. Sharing is not regarded: as everywhere on Linux, nobody is held off.
    /// Security attributes, template files and other flags are not supported.
    /// @return invalidHandle on failure. The last error is ErrorAlreadyExists after CreateAlways or
    ///         OpenAlways met a file, else ErrorSuccess.
    static Handle createFile(const wchar_t *name, Dword access, Dword share, const void *security,
                             Dword disposition, Dword flagsAndAttributes, Handle templateFile);
    /// Reads until there are @p size bytes or the file ends, from where it stands. It must be open
    /// with GenericRead. Overlapped reading is not supported.
    /// @param[out] read the number of bytes; never null
    static Bool readFile(Handle file, void *buffer, Dword size, Dword *read, void *overlapped);
    /// Writes all @p size bytes where the file stands. It must be open with GenericWrite.
    /// Overlapped writing is not supported.
    /// @param[out] written the number of bytes, less only on failure; never null
    static Bool writeFile(Handle file, const void *buffer, Dword size, Dword *written,
                          void *overlapped);
    /// Says where the next byte is read or written; behind the end of the file, too.
    /// @param[in,out] high the upper half of distance and new position; may be null
    /// @return the lower half of the new position, with ErrorSuccess, or invalidDword
    static Dword setFilePointer(Handle file, Long distance, Long *high, Dword method);
    /// @param[out] high the upper half of the size in bytes; may be null
    /// @return its lower half, with ErrorSuccess, or invalidDword
    static Dword getFileSize(Handle file, Dword *high);
    /// Waits until all that was written is on the disk. The file must be open with GenericWrite.
    static Bool flushFileBuffers(Handle file);
    /// Closes a file; for searches there is findClose(), for modules freeLibrary().
    static Bool closeHandle(Handle file);

    /// Copies a file, with the time of its last change. One that is there is replaced whole or not at
    /// all, unless it is read-only, or @p failIfExists.
    static Bool copyFile(const wchar_t *from, const wchar_t *to, Bool failIfExists);
    /// Moves or renames a file or folder. Does not replace what is there; between file systems only
    /// files move.
    static Bool moveFile(const wchar_t *from, const wchar_t *to);
    /// Folders and read-only files are refused with ErrorAccessDenied.
    static Bool deleteFile(const wchar_t *name);
    /// @return the attributes added up, FileAttributeNormal where there are none; invalidDword on
    ///         failure
    static Dword getFileAttributes(const wchar_t *name);
    /// Sets or clears FileAttributeReadOnly. An attribute that Linux has not, or that the name
    /// decides, is not supported unless the file has it anyway.
    static Bool setFileAttributes(const wchar_t *name, Dword attributes);

    /// Makes one folder in a folder that is there. ErrorAlreadyExists tells that the name is taken;
    /// security attributes are not supported.
    static Bool createDirectory(const wchar_t *name, const void *security);
    /// Removes an empty folder.
    static Bool removeDirectory(const wchar_t *name);
    /// Changes the current folder of the process.
    static Bool setCurrentDirectory(const wchar_t *name);
    /// @return the characters written, or the size needed, NUL included, if @p size is too small
    static Dword getCurrentDirectory(Dword size, wchar_t *buffer);
    /// The folder for temporary files, with a slash at its end.
    /// @return as getCurrentDirectory()
    static Dword getTempPath(Dword size, wchar_t *buffer);
    /// The whole path of a name, which need not be there.
    /// @param[out] filePart the last name in @p buffer, null if there is none; may be null
    /// @return as getCurrentDirectory()
    static Dword getFullPathName(const wchar_t *name, Dword size, wchar_t *buffer,
                                 wchar_t **filePart);

    /// In 100 ns since 1601, UTC; 0 where the file system has none.
    struct FileTime
    {
        Dword low;  ///< the lower half
        Dword high; ///< the upper half
    };

    /// What was found.
    struct FindData
    {
        Dword fileAttributes;    ///< as getFileAttributes() tells them
        FileTime creationTime;   ///< when the file was made
        FileTime lastAccessTime; ///< when it was read last, as far as the system keeps that
        FileTime lastWriteTime;  ///< when it was changed last
        Dword fileSizeHigh;      ///< the upper half of the size in bytes
        Dword fileSizeLow;       ///< the lower half
        wchar_t fileName[260];   ///< without the folder
    };

    /// Finds the names that match the last part of @p pattern, where `*` stands for any text and
    /// `?` for one character; "*.*" matches every name. They come sorted, "." and ".." among them.
    static Handle findFirstFile(const wchar_t *pattern, FindData *data);
    /// Goes on to the next name that is still there.
    /// @return 0 with ErrorNoMoreFiles behind the last one
    static Bool findNextFile(Handle find, FindData *data);
    /// Ends the search.
    static Bool findClose(Handle find);

    // Profile files: INI files in the Windows format, as UTF-8, as UTF-16 with a byte order mark, or
    // else as Latin-1. A path without a folder is in the current one. Names are told apart without
    // regard to case; the first of equal sections and keys counts. A file that is not there counts as
    // an empty one; from one that can't be read nothing is found, and the last error is set.

    /// The value without the quotes around it; all keys without a @p key, all sections without a
    /// @p section, each with a NUL and one more at the end.
    /// @return the characters written without the last NUL; size - 1 when a value was cut short,
    ///         size - 2 when a list was
    static Dword getPrivateProfileString(const wchar_t *section, const wchar_t *key,
                                         const wchar_t *fallback, wchar_t *buffer, Dword size,
                                         const wchar_t *file);
    /// A decimal number; what follows it is not regarded.
    static Dword getPrivateProfileInt(const wchar_t *section, const wchar_t *key, Long fallback,
                                      const wchar_t *file);
    /// The "key=value" texts of a section, without its comments, each with a NUL and one more at
    /// the end.
    /// @return as getPrivateProfileString()
    static Dword getPrivateProfileSection(const wchar_t *section, wchar_t *buffer, Dword size,
                                          const wchar_t *file);
    /// As getPrivateProfileString() without a section.
    static Dword getPrivateProfileSectionNames(wchar_t *buffer, Dword size, const wchar_t *file);
    /// Sets a value; removes the key without a @p value, the section without a @p key. The file is
    /// replaced whole or not at all, never if it can't be read; what is not changed keeps its bytes
    /// and its place. Text with a line break is refused, and so is what would be read as something else:
    /// a section's name with a `]`, an empty key, or a key with a `=`, a `;` in front or that begins a
    /// section. A file that could then be taken for one in another encoding becomes UTF-8 with a mark.
    static Bool writePrivateProfileString(const wchar_t *section, const wchar_t *key,
                                          const wchar_t *value, const wchar_t *file);
    /// Replaces all lines of a section, comments included. What is no line of a section is refused.
    /// @param entries "key=value" texts, each with a NUL and one more at the end
    static Bool writePrivateProfileSection(const wchar_t *section, const wchar_t *entries,
                                           const wchar_t *file);

    // Code pages and locale

    /// Code pages with names; they all are UTF-8.
    enum CodePage : Dword { CpAcp = 0, CpOemCp = 1, CpThreadAcp = 3, CpUtf8 = 65001 };

    /// What a conversion does with what it cannot convert.
    enum ConversionFlag : Dword {
        MbPrecomposed = 1,
        MbErrInvalidChars = 8,
        WcErrInvalidChars = 0x80,
        WcNoBestFitChars = 0x400 ///< always so: there is no best fit
    };

    /// Code pages are UTF-8, 1250 to 1258, 932, 936, 949 and 950. What has no meaning in @p codePage
    /// becomes U+FFFD, or with MbErrInvalidChars ErrorNoUnicodeTranslation.
    /// @param length in bytes; negative for text that ends with a NUL, which is then converted too
    /// @param size   in characters; 0 asks for the size needed
    /// @return the characters written or needed; 0 on failure, and nothing is written
    static int multiByteToWideChar(Dword codePage, Dword flags, const char *text, int length,
                                   wchar_t *buffer, int size);
    /// What @p codePage has not becomes @p defaultChar, or '?'. In UTF-8 a surrogate becomes U+FFFD,
    /// or with WcErrInvalidChars ErrorNoUnicodeTranslation; the last two parameters must be null.
    static int wideCharToMultiByte(Dword codePage, Dword flags, const wchar_t *text, int length,
                                   char *buffer, int size, const char *defaultChar,
                                   Bool *usedDefaultChar);
    /// CpUtf8, whatever the locale is.
    static Dword getACP();
    /// The documented number of the user's language, as LC_ALL, LC_MESSAGES or LANG says it; 0x1000
    /// for one that has none in the table here.
    static Word getUserDefaultLangID();
    /// "de-AT"; empty for the C locale.
    /// @return the characters written, NUL included; 0 on failure
    static int getUserDefaultLocaleName(wchar_t *buffer, int size);

    // Threads, time, environment

    /// What one thread at a time can be in, as often as it likes.
    struct CriticalSection
    {
        void *mutex; ///< null after deleteCriticalSection()
    };
    /// Makes the section ready for use. Each needs a deleteCriticalSection().
    static void initializeCriticalSection(CriticalSection *section);
    /// Waits until no other thread is in the section.
    static void enterCriticalSection(CriticalSection *section);
    /// Once for each enterCriticalSection(), in the same thread.
    static void leaveCriticalSection(CriticalSection *section);
    /// Nobody may be in the section.
    static void deleteCriticalSection(CriticalSection *section);

    static Long interlockedIncrement(volatile Long *value); ///< returns the new value
    static Long interlockedDecrement(volatile Long *value); ///< returns the new value

    /// A date and a time of the day.
    struct SystemTime
    {
        Word year;         ///< all four figures
        Word month;        ///< 1 is January
        Word dayOfWeek;    ///< 0 is Sunday
        Word day;          ///< from 1
        Word hour;         ///< up to 23
        Word minute;       ///< up to 59
        Word second;       ///< up to 59
        Word milliseconds; ///< up to 999
    };
    static Dword getTickCount(); ///< milliseconds since the system started
    /// Holds the thread for that long at least.
    static void sleep(Dword milliseconds);
    /// The date and the time now, in the local time zone.
    static void getLocalTime(SystemTime *time);

    /// @return as getCurrentDirectory(); 0 with ErrorEnvVarNotFound. An empty value gives 0, too:
    ///         what succeeds or finds the buffer too small leaves the last error as it was.
    static Dword getEnvironmentVariable(const wchar_t *name, wchar_t *buffer, Dword size);
    /// @param value null removes the variable
    static Bool setEnvironmentVariable(const wchar_t *name, const wchar_t *value);

    // C runtime. Narrow text changes case in ASCII only, wide text in all of Unicode. These report
    // through errno and their results, not through the last error.

    /// Results beside those of errno: what was cut short, and what cannot be compared.
    enum RuntimeError { RuntimeTruncated = 80, RuntimeCompareError = 2147483647 };

private:
    /// These functions for narrow and for wide text.
    template <typename Char>
    struct Runtime
    {
        static int compare(const Char *one, const Char *other);
        static int compareCount(const Char *one, const Char *other, std::size_t count);
        static Char *upper(Char *text);
        static Char *lower(Char *text);
        static Char *reverse(Char *text);
        static Char *number(int value, Char *buffer, int radix);
        static Char *number64(std::int64_t value, Char *buffer, int radix);
        static int numberS(int value, Char *buffer, std::size_t size, int radix);
        static int copy(Char *buffer, std::size_t size, const Char *text);
        static int copyCount(Char *buffer, std::size_t size, const Char *text, std::size_t count);
        static int concatenate(Char *buffer, std::size_t size, const Char *text);
        static int split(const Char *path, Char *drive, Char *folder, Char *name, Char *extension);
        static int splitS(const Char *path, Char *drive, std::size_t driveSize, Char *folder,
                          std::size_t folderSize, Char *name, std::size_t nameSize, Char *extension,
                          std::size_t extensionSize);
        static int make(Char *path, const Char *drive, const Char *folder, const Char *name,
                        const Char *extension);
        static int makeS(Char *path, std::size_t size, const Char *drive, const Char *folder,
                         const Char *name, const Char *extension);
    };
    using Narrow = Runtime<char>;
    using Wide = Runtime<wchar_t>;

public:
    /// Compare without regard to case, the last two up to a count of characters.
    /// @return -1, 0 or 1; RuntimeCompareError, and EINVAL, for a null pointer
    /// @{
    static constexpr auto stricmp = Narrow::compare;
    static constexpr auto wcsicmp = Wide::compare;
    static constexpr auto strnicmp = Narrow::compareCount;
    static constexpr auto wcsnicmp = Wide::compareCount;
    /// @}

    /// Turn a text in its place: into upper case, into lower case, the last character first.
    /// @return the text; null, with EINVAL, for a null pointer
    /// @{
    static constexpr auto strupr = Narrow::upper;
    static constexpr auto wcsupr = Wide::upper;
    static constexpr auto strlwr = Narrow::lower;
    static constexpr auto wcslwr = Wide::lower;
    static constexpr auto strrev = Narrow::reverse;
    static constexpr auto wcsrev = Wide::reverse;
    /// @}

    /// Numbers in radix 2 to 36; only radix 10 has a minus sign. The buffer needs 33 characters, 65
    /// for 64 bits; another radix makes the text empty and sets errno to EINVAL.
    /// @{
    static constexpr auto itoa = Narrow::number;
    static constexpr auto itow = Wide::number;
    static constexpr auto i64toa = Narrow::number64;
    static constexpr auto i64tow = Wide::number64;
    /// @}
    /// These know the size: 0, or EINVAL or ERANGE with an empty text.
    /// @{
    static constexpr auto itoaS = Narrow::numberS;
    static constexpr auto itowS = Wide::numberS;
    /// @}
    /// The number that begins the text, clamped with ERANGE; 0 without one. The decimal point of
    /// wtof() is a point in every locale.
    /// @{
    static int wtoi(const wchar_t *text);
    static double wtof(const wchar_t *text);
    /// @}

    /// Copies that never pass the size: 0, or EINVAL or ERANGE with an empty text. strncpyS() and
    /// wcsncpyS() with the count `truncate` keep what fits and return RuntimeTruncated.
    /// @{
    static constexpr auto strcpyS = Narrow::copy;
    static constexpr auto wcscpyS = Wide::copy;
    static constexpr auto strncpyS = Narrow::copyCount;
    static constexpr auto wcsncpyS = Wide::copyCount;
    static constexpr auto strcatS = Narrow::concatenate;
    static constexpr auto wcscatS = Wide::concatenate;
    /// @}

    /// Splits a path into "C:", "/folder/", "name" and ".extension", each of which may be null, and
    /// puts one together. Without sizes they are the documented 3, 256, 256 and 256 characters, and
    /// 260 for a whole path: 0, or EINVAL or ERANGE with all that is written empty.
    /// @{
    static constexpr auto splitpath = Narrow::split;
    static constexpr auto wsplitpath = Wide::split;
    static constexpr auto wsplitpathS = Wide::splitS;
    static constexpr auto makepath = Narrow::make;
    static constexpr auto wmakepath = Wide::make;
    static constexpr auto wmakepathS = Wide::makeS;
    /// @}

private:
    template <auto failure, typename... Parameters>
    static decltype(failure) unsupported(Parameters...)
    {
        setLastError(ErrorNotSupported);
        return failure;
    }
    using Text = const wchar_t *;
    using Data = const void *;
    static constexpr Bool no = 0;
    static constexpr Handle none = 0;
    static constexpr Dword noColor = 0xffffffff;

public:
    /// Drawing and printers: there is nothing to draw on. Each fails with its documented value and
    /// ErrorNotSupported.
    /// @{
    static constexpr auto createDC = unsupported<none, Text, Text, Text, Data>;
    static constexpr auto createCompatibleDC = unsupported<none, Handle>;
    static constexpr auto deleteDC = unsupported<no, Handle>;
    static constexpr auto getDC = unsupported<none, Handle>;
    static constexpr auto releaseDC = unsupported<0, Handle, Handle>;
    static constexpr auto getDeviceCaps = unsupported<0, Handle, int>;
    static constexpr auto createCompatibleBitmap = unsupported<none, Handle, int, int>;
    static constexpr auto createSolidBrush = unsupported<none, Dword>;
    static constexpr auto createPen = unsupported<none, int, int, Dword>;
    static constexpr auto selectObject = unsupported<none, Handle, Handle>;
    static constexpr auto deleteObject = unsupported<no, Handle>;
    static constexpr auto bitBlt =
            unsupported<no, Handle, int, int, int, int, Handle, int, int, Dword>;
    static constexpr auto moveToEx = unsupported<no, Handle, int, int, void *>;
    static constexpr auto lineTo = unsupported<no, Handle, int, int>;
    static constexpr auto rectangle = unsupported<no, Handle, int, int, int, int>;
    static constexpr auto textOut = unsupported<no, Handle, int, int, Text, int>;
    static constexpr auto setTextColor = unsupported<noColor, Handle, Dword>;
    static constexpr auto openPrinter = unsupported<no, Text, Handle *, void *>;
    static constexpr auto closePrinter = unsupported<no, Handle>;
    static constexpr auto getDefaultPrinter = unsupported<no, wchar_t *, Dword *>;
    static constexpr auto startDoc = unsupported<-1, Handle, Data>;
    static constexpr auto endDoc = unsupported<-1, Handle>;
    static constexpr auto startPage = unsupported<-1, Handle>;
    static constexpr auto endPage = unsupported<-1, Handle>;
    /// @}
};
