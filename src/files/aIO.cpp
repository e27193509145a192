#include <kvarta16/files/aIO.h>
#include <kvarta16/platform/platform.h>

namespace kvarta16 {
namespace {

constexpr Integer fixed_number = 1;
constexpr Long path_buffer_length = 255;
constexpr StringView write_test_name = u"\\zevotest.tmp";

bool is_folder(Long attributes) {
    return (attributes & file_attribute::directory) != 0;
}

// Runs a body for its whole length: true once it has come to its end.
template <class Body>
Boolean succeeds(Body body) {
    bool has_ended = false;
    guarded([&] {
        body();
        has_ended = true;
    });
    return has_ended;
}

// "\\" becomes "\", left to right, not looking at what has been put; and so once more.
String single_backslashes(StringView path) {
    constexpr StringView doubled = u"\\\\";
    constexpr StringView single = u"\\";
    return replace_all(replace_all(path, doubled, single), doubled, single);
}

}  // namespace

// ---- Paths ----------------------------------------------------------------------------------

String aIO::WithOutDirSep(StringView a) const {
    return String(a.substr(0, a.rfind(u'\\')));
}

void aIO::AddDirSep(String& strPathName) const {
    strPathName.resize(trim_right(strPathName).size());
    if (!IsSeparator(right_part(strPathName, 1))) {
        strPathName += u'\\';
    }
}

String aIO::GetWindowsDir() const {
    String buffer = blanks(path_buffer_length);
    if (platform().system_information->GetWindowsDirectoryA(buffer, path_buffer_length) == 0) {
        return {};
    }
    String directory = StringFromBuffer(buffer);
    AddDirSep(directory);
    return directory;
}

String aIO::StringFromBuffer(StringView Buffer) const {
    return String(Buffer.substr(0, Buffer.find(u'\0')));
}

// ---- Folders and files ----------------------------------------------------------------------

void aIO::MakeDirChange(StringView a) const {
    if (a.empty()) {
        return;
    }
    const Boolean has_changed = succeeds([a] {
        platform().files->ChDrive(a);
        platform().files->ChDir(a);
    });
    if (!has_changed) {
        MakeDirQuiet(a);
    }
}

void aIO::MakeDir(StringView a) const {
    if (a.empty()) {
        return;
    }
    if (!succeeds([a] { platform().files->MkDir(a); })) {
        MakeDirQuiet(a);
    }
}

void aIO::MakeDirQuiet(StringView a) const {
    step([a] { platform().files->MkDir(a); });
}

void aIO::DelFile2(StringView a) const {
    step([a] { platform().files->Kill(a); });
}

Boolean aIO::DelFile(StringView a) const {
    if (IsFile(a)) {
        step([a] { platform().files->Kill(a); });
    }
    return !IsFile(a);
}

Boolean aIO::RenameFile(StringView FromFile, StringView ToFile, Boolean DelDestination,
                        Boolean /*Silent*/) const {
    return succeeds([&] {
        if (DelDestination && IsFile(ToFile)) {
            DelFile2(ToFile);
        }
        platform().files->Name(FromFile, ToFile);
    });
}

Boolean aIO::IsFile(StringView SpecIn) const {
    Long attributes = 0;
    if (succeeds([&] { attributes = platform().files->GetAttr(SpecIn); })) {
        return !is_folder(attributes);
    }
    return IsFile_file(SpecIn);
}

Boolean aIO::IsFile_file(StringView SpecIn) const {
    FileTable& table = *platform().file_table;
    Integer number = 0;  // nothing is ever open under 0
    const Boolean can_be_read = succeeds([&] {
        number = table.FreeFile();
        table.Open(SpecIn, number, OpenMode::Input, Sharing::Shared);
        table.Close(number);
    });
    if (!can_be_read) {
        step([&] { table.Close(number); });
    }
    return can_be_read;
}

Boolean aIO::IsDIR(StringView SpecIn) const {
    Long attributes = 0;
    if (succeeds([&] { attributes = platform().files->GetAttr(SpecIn); })) {
        return is_folder(attributes);
    }
    // An empty path is no folder, though the write test would be made in the root of the drive.
    return SpecIn.empty() ? Boolean(false) : IsDirWritable(SpecIn);
}

// No separator is looked for: a folder told with one gets it doubled.
Boolean aIO::IsDirWritable(StringView a) const {
    FileTable& table = *platform().file_table;
    const String path = String(a).append(write_test_name);
    Integer number = 0;
    if (!succeeds([&] { number = table.FreeFile(); })) {
        return false;  // nothing has been made that would have to go
    }
    const Boolean is_made = succeeds([&] {
        table.Open(path, number, OpenMode::Random, Sharing::Shared);
        table.Close(number);
    });
    if (!is_made) {
        step([&] { table.Close(number); });
    }
    DelFile2(path);
    return is_made;
}

// ---- Parts of paths -------------------------------------------------------------------------

String aIO::BaseName(StringView sPathandFile) const {
    String path;
    String file_name;
    SeparatePathAndFileName(sPathandFile, path, file_name);
    return file_name;
}

String aIO::BaseName_BezExT(StringView sPathandFile) const {
    const String name = BaseName(sPathandFile);
    return name.substr(0, name.rfind(u'.'));
}

String aIO::BaseName_ExT(StringView sPathandFile) const {
    const String name = BaseName(sPathandFile);
    const std::size_t dot = name.rfind(u'.');
    return dot == String::npos ? String() : name.substr(dot + 1);
}

void aIO::SeparatePathAndFileName(StringView FullPath, String& Path, String& FileName) const {
    std::size_t separator = FullPath.size();  // its 1-based position, 0 for none
    while (separator > 0 && !IsSeparator(FullPath.substr(separator - 1, 1))) {
        --separator;
    }
    if (separator == FullPath.size()) {  // an empty text, or a separator at its end
        return;
    }
    // Both are taken before either is written: a caller may pass one variable twice.
    String path =
        separator == 0 ? platform().files->CurDir() : String(FullPath.substr(0, separator - 1));
    String file_name(FullPath.substr(separator));
    Path = std::move(path);
    FileName = std::move(file_name);
}

Boolean aIO::IsSeparator(StringView Character) const {
    return Character == u"\\" || Character == u"/";
}

String aIO::PathStr(StringView a) const {
    String path = a.starts_with(u"\\\\") ? u"\\" + single_backslashes(a) : single_backslashes(a);
    const std::size_t separator = path.rfind(u'\\');
    if (separator != String::npos) {
        path.resize(separator);
    }
    // Holds for texts of two characters alone; callers have come to rely on "\" for \x\y.
    while (path.size() >= 2 && StringView(path).substr(0, path.size() - 1) == u"\\") {
        path.pop_back();
    }
    return path;
}

// ---- Contents -------------------------------------------------------------------------------

Boolean aIO::FileCopy_Fun(StringView Skąd, StringView Dokąd) const {
    return succeeds([&] { platform().files->FileCopy(Skąd, Dokąd); });
}

Boolean aIO::IsFile_open(StringView a) const {
    return succeeds([a] {
        platform().file_table->Open(a, fixed_number, OpenMode::Input, Sharing::Default);
        platform().file_table->Close(fixed_number);
    });
}

Boolean aIO::Zapisz_do_pliku(StringView Plik, StringView StrA) const {
    FileTable& table = *platform().file_table;
    const Boolean is_written = succeeds([&] {
        table.Close(fixed_number);
        if (IsFile(Plik)) {
            static_cast<void>(DelFile(Plik));  // Open says if it is still in the way
        }
        table.Open(Plik, fixed_number, OpenMode::Output, Sharing::Default);
        table.PrintLine(fixed_number, StrA);
        table.Close(fixed_number);
    });
    if (!is_written) {
        platform().message_boxes->MsgBox(u"Plik jest za duży by wydrukować go na ekranie !",
                                         msg_box::critical, std::nullopt);
    }
    return is_written;
}

}  // namespace kvarta16
