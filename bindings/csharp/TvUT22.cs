// Made by scripts/bindings from the headers. docs/other-languages.md tells how to use it.
using System;
using System.Runtime.InteropServices;
using System.Runtime.InteropServices.ComTypes;
using System.Text;

public static class TvUT22
{
    const string Dll = "tvUT22.dll";

    [StructLayout(LayoutKind.Sequential, CharSet = CharSet.Unicode)]
    public struct POINT
    {
        public int x;
        public int y;
    }

    [StructLayout(LayoutKind.Sequential, CharSet = CharSet.Unicode)]
    public struct RECT
    {
        public int left;
        public int top;
        public int right;
        public int bottom;
    }

    [StructLayout(LayoutKind.Sequential, CharSet = CharSet.Unicode)]
    public struct FILETIME
    {
        public uint dwLowDateTime;
        public uint dwHighDateTime;
    }

    [StructLayout(LayoutKind.Sequential, CharSet = CharSet.Unicode)]
    public struct SYSTEMTIME
    {
        public ushort wYear;
        public ushort wMonth;
        public ushort wDayOfWeek;
        public ushort wDay;
        public ushort wHour;
        public ushort wMinute;
        public ushort wSecond;
        public ushort wMilliseconds;
    }

    public const int TVUT22_VERSION_MAJOR = 22;
    public const int TVUT22_VERSION_MINOR = 10;
    public const string TVUT22_VERSION_TEXT = @"22.10";
    public const int TVUT22_VERSION = 0x16000a;

    /// <summary>One open profile</summary>
    public struct ProfJob { public IntPtr Handle; }

    /// <summary>One list inside a job's tree</summary>
    public struct ProfList { public IntPtr Handle; }

    /// <summary>success</summary>
    public const int PROF_OK = 0;
    /// <summary>open: not a valid file name, or the file could not be opened</summary>
    public const int PROF_OPEN_FAILED = -1;
    /// <summary>ProfAppendFiles: a file could not be read or kept</summary>
    public const int PROF_CONVERT_FAILED = -2;
    /// <summary>open: an exclusive open failed, other than by sharing</summary>
    public const int PROF_EXCLUSIVE_FAILED = -3;
    /// <summary>ProfSaveToClipboard: no clipboard or no temporary file</summary>
    public const int PROF_CLIPBOARD_FAILED = -3;
    /// <summary>save: the profile could not be written</summary>
    public const int PROF_SAVE_FAILED = -4;
    /// <summary>ProfGetStream, ProfGetFile: not decoded or not written</summary>
    public const int PROF_DECODE_FAILED = -4;
    /// <summary>ProfGetError, ProfDebugList, ProfCopyList: invalid job handle</summary>
    public const int PROF_INVALID_JOB = -5;
    /// <summary>Get: no such item (typed Get: or its text is empty)</summary>
    public const int PROF_NOT_FOUND = -6;
    /// <summary>open: the contents could not be parsed</summary>
    public const int PROF_LOAD_FAILED = -7;
    /// <summary>ProfCopyList: failed or stopped</summary>
    public const int PROF_COPY_FAILED = -8;
    /// <summary>ProfSaveToClipboard: no memory that the clipboard would take</summary>
    public const int PROF_NO_GLOBAL_MEMORY = -8;
    /// <summary>Get: the item's text is not of the type asked for</summary>
    public const int PROF_NOT_PARSED = -9;
    /// <summary>open: locked by others for 10 seconds, or it could not be read</summary>
    public const int PROF_LOCKED = -10;

    public const uint PROF_FORM_TEXT = 0x0;
    public const uint PROF_FORM_XML = 0x1;
    public const uint PROF_FORM_XFDF = 0x2;

    /// <summary>always write the compressed wrapper</summary>
    public const uint PROF_SAVE_COMPRESSED = 0x40;
    /// <summary>... if the profile was read from a compressed one</summary>
    public const uint PROF_SAVE_COMPRESSED_AS_READ = 0x80;

    /// <summary>read XFDF as other programs write it</summary>
    public const uint PROF_READ_FOREIGN_XFDF = 0x1;
    /// <summary>every [section] is a list of the root list</summary>
    public const uint PROF_READ_PLAIN_INI = 0x2;
    /// <summary>read the XML form as other XML programs leave it</summary>
    public const uint PROF_READ_FOREIGN_XML = 0x4;

    /// <summary>code page of the A forms and of 8-bit files; first: GetACP()</summary>
    public const uint PROF_OPTION_CODE_PAGE = 1;

    /// <summary>Opens a profile from a file, which is closed again before the call returns</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern ProfJob ProfJobOpenA(string fileName);
    /// <summary>Opens a profile from a file, which is closed again before the call returns</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern ProfJob ProfJobOpenW(string fileName);

    /// <summary>Opens a profile from a file and holds the file open for reading and writing until the job ends</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern ProfJob ProfJobOpenExclusiveA(string fileName);
    /// <summary>Opens a profile from a file and holds the file open for reading and writing until the job ends</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern ProfJob ProfJobOpenExclusiveW(string fileName);

    /// <summary>Opens a profile from a stream, which is read from its start to its end</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern ProfJob ProfJobOpenStream(IStream stream);

    /// <summary>As ProfJobOpenStream, with a name and flags</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern ProfJob ProfJobOpenStreamObjectA(IStream stream, string name, uint flags);
    /// <summary>As ProfJobOpenStream, with a name and flags</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern ProfJob ProfJobOpenStreamObjectW(IStream stream, string name, uint flags);

    /// <summary>Adds one reference to a job</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfJobAddRef(ProfJob job);

    /// <summary>Releases one reference to a job</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfJobClose(ProfJob job);

    /// <summary>Returns the error of opening and loading the job: PROF_OK or one of the codes of ProfJobOpen</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfGetError(ProfJob job);

    /// <summary>Saves a profile to a file</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfSaveA(ProfJob job, string fileName, uint flags);
    /// <summary>Saves a profile to a file</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfSaveW(ProfJob job, string fileName, uint flags);

    /// <summary>Saves a profile into a stream, from its start, and cuts the stream where the profile ends</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfSaveToStream(ProfJob job, IStream stream, uint flags);

    /// <summary>Puts a profile on the clipboard, under a private format</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfSaveToClipboard(ProfJob job, IntPtr owner, uint flags);

    /// <summary>Opens a profile from the clipboard</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern ProfJob ProfJobOpenClipboard(IntPtr owner);

    /// <summary>Tells whether the clipboard holds a profile: nonzero, or 0</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern bool ProfIsClipboardDataAvailable();

    /// <summary>Finds a list by path: at each segment the first list of that name, with no second try</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern ProfList ProfGetListA(ProfJob job, ProfList list, string path);
    /// <summary>Finds a list by path: at each segment the first list of that name, with no second try</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern ProfList ProfGetListW(ProfJob job, ProfList list, string path);

    /// <summary>Makes an empty list at a path: at each segment the first list of that name is taken, or appended when missing</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern ProfList ProfCreateListA(ProfJob job, ProfList list, string path);
    /// <summary>Makes an empty list at a path: at each segment the first list of that name is taken, or appended when missing</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern ProfList ProfCreateListW(ProfJob job, ProfList list, string path);

    /// <summary>Appends a new list for every segment of the path, whether or not one of that name exists: "A/B" makes a new A that holds a new B</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern ProfList ProfAppendListA(ProfJob job, ProfList list, string path);
    /// <summary>Appends a new list for every segment of the path, whether or not one of that name exists: "A/B" makes a new A that holds a new B</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern ProfList ProfAppendListW(ProfJob job, ProfList list, string path);

    /// <summary>Deletes lists, with all that is in them</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfDeleteListA(ProfJob job, ProfList list, string path);
    /// <summary>Deletes lists, with all that is in them</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfDeleteListW(ProfJob job, ProfList list, string path);

    /// <summary>Deletes every entry of a list</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfEmptyList(ProfJob job, ProfList list);

    /// <summary>Appends copies of all entries of a source list, with all that is in them, to a destination list</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfCopyList(ProfJob destinationJob, ProfList destinationList, ProfJob sourceJob, ProfList sourceList);

    /// <summary>Called once an entry by ProfEnum</summary>
    [UnmanagedFunctionPointer(CallingConvention.StdCall, CharSet = CharSet.Ansi)]
    public delegate bool ProfEnumCallbackA(ProfJob job, string name, string value, ProfList subList, UIntPtr user);
    /// <summary>Called once an entry by ProfEnum</summary>
    [UnmanagedFunctionPointer(CallingConvention.StdCall, CharSet = CharSet.Unicode)]
    public delegate bool ProfEnumCallbackW(ProfJob job, string name, string value, ProfList subList, UIntPtr user);

    /// <summary>Walks the entries of one list in order, without entering the lists it holds</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern bool ProfEnumA(ProfJob job, ProfList list, ProfEnumCallbackA callback, UIntPtr user);
    /// <summary>Walks the entries of one list in order, without entering the lists it holds</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern bool ProfEnumW(ProfJob job, ProfList list, ProfEnumCallbackW callback, UIntPtr user);

    /// <summary>Writes a list and all that is in it to the diagnostic output, a line an entry, indented by one blank a level and ended by "\n"</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfDebugList(ProfJob job, ProfList list);

    /// <summary>Deletes every item that the path reaches, through every list of each segment's name</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfDeleteItemA(ProfJob job, ProfList list, string path);
    /// <summary>Deletes every item that the path reaches, through every list of each segment's name</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfDeleteItemW(ProfJob job, ProfList list, string path);

    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfAppendStringA(ProfJob job, ProfList list, string path, string value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfAppendStringW(ProfJob job, ProfList list, string path, string value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfSetStringA(ProfJob job, ProfList list, string path, string value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfSetStringW(ProfJob job, ProfList list, string path, string value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfAppendBoolA(ProfJob job, ProfList list, string path, bool value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfAppendBoolW(ProfJob job, ProfList list, string path, bool value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfSetBoolA(ProfJob job, ProfList list, string path, bool value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfSetBoolW(ProfJob job, ProfList list, string path, bool value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfAppendIntA(ProfJob job, ProfList list, string path, int value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfAppendIntW(ProfJob job, ProfList list, string path, int value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfSetIntA(ProfJob job, ProfList list, string path, int value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfSetIntW(ProfJob job, ProfList list, string path, int value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfAppendIntHexA(ProfJob job, ProfList list, string path, uint value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfAppendIntHexW(ProfJob job, ProfList list, string path, uint value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfSetIntHexA(ProfJob job, ProfList list, string path, uint value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfSetIntHexW(ProfJob job, ProfList list, string path, uint value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfAppendInt64A(ProfJob job, ProfList list, string path, long value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfAppendInt64W(ProfJob job, ProfList list, string path, long value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfSetInt64A(ProfJob job, ProfList list, string path, long value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfSetInt64W(ProfJob job, ProfList list, string path, long value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfAppendInt64HexA(ProfJob job, ProfList list, string path, long value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfAppendInt64HexW(ProfJob job, ProfList list, string path, long value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfSetInt64HexA(ProfJob job, ProfList list, string path, long value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfSetInt64HexW(ProfJob job, ProfList list, string path, long value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfAppendDoubleA(ProfJob job, ProfList list, string path, double value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfAppendDoubleW(ProfJob job, ProfList list, string path, double value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfSetDoubleA(ProfJob job, ProfList list, string path, double value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfSetDoubleW(ProfJob job, ProfList list, string path, double value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfAppendPointA(ProfJob job, ProfList list, string path, [In] ref POINT value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfAppendPointW(ProfJob job, ProfList list, string path, [In] ref POINT value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfSetPointA(ProfJob job, ProfList list, string path, [In] ref POINT value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfSetPointW(ProfJob job, ProfList list, string path, [In] ref POINT value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfAppendRectA(ProfJob job, ProfList list, string path, [In] ref RECT value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfAppendRectW(ProfJob job, ProfList list, string path, [In] ref RECT value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfSetRectA(ProfJob job, ProfList list, string path, [In] ref RECT value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfSetRectW(ProfJob job, ProfList list, string path, [In] ref RECT value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfAppendRectLTWHA(ProfJob job, ProfList list, string path, [In] ref RECT value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfAppendRectLTWHW(ProfJob job, ProfList list, string path, [In] ref RECT value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfSetRectLTWHA(ProfJob job, ProfList list, string path, [In] ref RECT value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfSetRectLTWHW(ProfJob job, ProfList list, string path, [In] ref RECT value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfAppendColorrefA(ProfJob job, ProfList list, string path, uint value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfAppendColorrefW(ProfJob job, ProfList list, string path, uint value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfSetColorrefA(ProfJob job, ProfList list, string path, uint value);
    /// <summary>Append adds an item at the end of its list, whatever is there</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfSetColorrefW(ProfJob job, ProfList list, string path, uint value);

    /// <summary>Reads an item's text</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfGetStringA(ProfJob job, ProfList list, string path, StringBuilder buffer, uint size, string defaultValue);
    /// <summary>Reads an item's text</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfGetStringW(ProfJob job, ProfList list, string path, StringBuilder buffer, uint size, string defaultValue);

    /// <summary>Returns the length of an item's text in UTF-16 characters without a terminator, or PROF_NOT_FOUND</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfGetStringLengthA(ProfJob job, ProfList list, string path);
    /// <summary>Returns the length of an item's text in UTF-16 characters without a terminator, or PROF_NOT_FOUND</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfGetStringLengthW(ProfJob job, ProfList list, string path);

    /// <summary>Typed Get: reads an item's text and parses it</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfGetBoolA(ProfJob job, ProfList list, string path, ref bool @out, bool defaultValue);
    /// <summary>Typed Get: reads an item's text and parses it</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfGetBoolW(ProfJob job, ProfList list, string path, ref bool @out, bool defaultValue);
    /// <summary>Typed Get: reads an item's text and parses it</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfGetIntA(ProfJob job, ProfList list, string path, ref int @out, int defaultValue);
    /// <summary>Typed Get: reads an item's text and parses it</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfGetIntW(ProfJob job, ProfList list, string path, ref int @out, int defaultValue);
    /// <summary>Typed Get: reads an item's text and parses it</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfGetInt64A(ProfJob job, ProfList list, string path, ref long @out, long defaultValue);
    /// <summary>Typed Get: reads an item's text and parses it</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfGetInt64W(ProfJob job, ProfList list, string path, ref long @out, long defaultValue);
    /// <summary>Typed Get: reads an item's text and parses it</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfGetDoubleA(ProfJob job, ProfList list, string path, ref double @out, double defaultValue);
    /// <summary>Typed Get: reads an item's text and parses it</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfGetDoubleW(ProfJob job, ProfList list, string path, ref double @out, double defaultValue);
    /// <summary>Typed Get: reads an item's text and parses it</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfGetPointA(ProfJob job, ProfList list, string path, ref POINT @out, [In] ref POINT defaultValue);
    /// <summary>Typed Get: reads an item's text and parses it</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfGetPointW(ProfJob job, ProfList list, string path, ref POINT @out, [In] ref POINT defaultValue);
    /// <summary>Typed Get: reads an item's text and parses it</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfGetRectA(ProfJob job, ProfList list, string path, ref RECT @out, [In] ref RECT defaultValue);
    /// <summary>Typed Get: reads an item's text and parses it</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfGetRectW(ProfJob job, ProfList list, string path, ref RECT @out, [In] ref RECT defaultValue);
    /// <summary>Typed Get: reads an item's text and parses it</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfGetRectLTWHA(ProfJob job, ProfList list, string path, ref RECT @out, [In] ref RECT defaultValue);
    /// <summary>Typed Get: reads an item's text and parses it</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfGetRectLTWHW(ProfJob job, ProfList list, string path, ref RECT @out, [In] ref RECT defaultValue);
    /// <summary>Typed Get: reads an item's text and parses it</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfGetColorrefA(ProfJob job, ProfList list, string path, ref uint @out, uint defaultValue);
    /// <summary>Typed Get: reads an item's text and parses it</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfGetColorrefW(ProfJob job, ProfList list, string path, ref uint @out, uint defaultValue);

    /// <summary>Append or set an item that holds a variant, placed as by ProfAppendString and ProfSetString</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfAppendVariant(ProfJob job, ProfList list, string path, [In, MarshalAs(UnmanagedType.Struct)] ref object value);
    /// <summary>Append or set an item that holds a variant, placed as by ProfAppendString and ProfSetString</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfSetVariant(ProfJob job, ProfList list, string path, [In, MarshalAs(UnmanagedType.Struct)] ref object value);

    /// <summary>Reads a variant from an item</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfGetVariant(ProfJob job, ProfList list, string path, [MarshalAs(UnmanagedType.Struct)] ref object @out);

    /// <summary>As ProfGetVariant, from a text that the caller holds, such as the value that a callback of ProfEnumW is given</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfGetVariantFromContents(string text, [MarshalAs(UnmanagedType.Struct)] ref object @out);

    /// <summary>Append an item with the bytes of a stream or a file, whatever is there under that name</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfAppendStreamA(ProfJob job, ProfList list, string path, string key, IStream stream);
    /// <summary>Append an item with the bytes of a stream or a file, whatever is there under that name</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfAppendStreamW(ProfJob job, ProfList list, string path, string key, IStream stream);
    /// <summary>Append an item with the bytes of a stream or a file, whatever is there under that name</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfAppendFileA(ProfJob job, ProfList list, string path, string key, string fileName);
    /// <summary>Append an item with the bytes of a stream or a file, whatever is there under that name</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfAppendFileW(ProfJob job, ProfList list, string path, string key, string fileName);

    /// <summary>Write the bytes of an item, the first one of that name, to a stream or a file</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfGetStreamA(ProfJob job, ProfList list, string path, string key, IStream stream);
    /// <summary>Write the bytes of an item, the first one of that name, to a stream or a file</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfGetStreamW(ProfJob job, ProfList list, string path, string key, IStream stream);
    /// <summary>Write the bytes of an item, the first one of that name, to a stream or a file</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfGetFileA(ProfJob job, ProfList list, string path, string key, string fileName);
    /// <summary>Write the bytes of an item, the first one of that name, to a stream or a file</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfGetFileW(ProfJob job, ProfList list, string path, string key, string fileName);

    /// <summary>Appends files to a list: for each a list "File.Entry" with the items "Name", the file's name without its folder, and "Contents", its bytes</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfAppendFilesA(ProfJob job, ProfList list, string files, string key);
    /// <summary>Appends files to a list: for each a list "File.Entry" with the items "Name", the file's name without its folder, and "Contents", its bytes</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfAppendFilesW(ProfJob job, ProfList list, string files, string key);

    /// <summary>Writes every "File.Entry" of a list, in order, into a folder</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfExtractFilesA(ProfJob job, ProfList list, string folder, string key);
    /// <summary>Writes every "File.Entry" of a list, in order, into a folder</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfExtractFilesW(ProfJob job, ProfList list, string folder, string key);

    /// <summary>Parse a text that the caller holds</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfLPSTRtoBOOLA(string text, ref bool @out, bool defaultValue);
    /// <summary>Parse a text that the caller holds</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfLPSTRtoBOOLW(string text, ref bool @out, bool defaultValue);
    /// <summary>Parse a text that the caller holds</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfLPSTRtoINTA(string text, ref int @out, int defaultValue);
    /// <summary>Parse a text that the caller holds</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfLPSTRtoINTW(string text, ref int @out, int defaultValue);
    /// <summary>Parse a text that the caller holds</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfLPSTRtoINT64A(string text, ref long @out, long defaultValue);
    /// <summary>Parse a text that the caller holds</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfLPSTRtoINT64W(string text, ref long @out, long defaultValue);
    /// <summary>Parse a text that the caller holds</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfLPSTRtoRECTA(string text, ref RECT @out, [In] ref RECT defaultValue);
    /// <summary>Parse a text that the caller holds</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfLPSTRtoRECTW(string text, ref RECT @out, [In] ref RECT defaultValue);
    /// <summary>Parse a text that the caller holds</summary>
    [DllImport(Dll, CharSet = CharSet.Ansi, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfLPSTRtoCOLORREFA(string text, ref uint @out, uint defaultValue);
    /// <summary>Parse a text that the caller holds</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfLPSTRtoCOLORREFW(string text, ref uint @out, uint defaultValue);

    /// <summary>Returns the version: selector 0 gives 5642 (major * 256 + minor), 1 the major number 22, 2 the minor number 10, any other selector -1</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int ProfGetVersion(int selector);

    /// <summary>Sets an option of the process (low 16 bits of the value)</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfSetOption(uint option, uint value);

    /// <summary>Reads an option of the process</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern uint ProfGetOption(uint option);

    /// <summary>Does nothing: kept for callers of earlier versions</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void ProfSetDebug(bool flag);

    /// <summary>success</summary>
    public const int UTIL_OK = 0;
    /// <summary>an answer</summary>
    public const int UTIL_YES = 1;
    /// <summary>an answer</summary>
    public const int UTIL_NO = 0;
    /// <summary>null where something is wanted, an unknown flag, no handle of this kind</summary>
    public const int UTIL_BAD_ARGUMENT = -2;
    /// <summary>denied, or in use by somebody</summary>
    public const int UTIL_NO_ACCESS = -3;
    /// <summary>the system failed, or memory has run out</summary>
    public const int UTIL_FAILED = -4;
    /// <summary>not what it claims to be</summary>
    public const int UTIL_DAMAGED = -5;
    /// <summary>there is no such thing</summary>
    public const int UTIL_NOT_FOUND = -6;
    /// <summary>beyond a bound</summary>
    public const int UTIL_TOO_LARGE = -7;
    /// <summary>of a kind that is not known</summary>
    public const int UTIL_NOT_SUPPORTED = -8;
    /// <summary>a callback or an abort wanted it</summary>
    public const int UTIL_CANCELLED = -9;
    /// <summary>it would lead where it must not: out of the folder, from https to http</summary>
    public const int UTIL_UNSAFE = -10;
    /// <summary>missing or wrong</summary>
    public const int UTIL_BAD_PASSWORD = -11;
    /// <summary>it is there already</summary>
    public const int UTIL_EXISTS = -12;
    /// <summary>jobs were discarded</summary>
    public const int UTIL_JOBS_LEFT = -13;
    /// <summary>not possible from within a job</summary>
    public const int UTIL_FROM_JOB = -14;
    /// <summary>not possible while the thread loads or unloads a library</summary>
    public const int UTIL_IN_LOADER = -15;
    /// <summary>the time is over</summary>
    public const int UTIL_TIMEOUT = -16;
    /// <summary>another thread has to make this call</summary>
    public const int UTIL_WRONG_THREAD = -17;
    /// <summary>the text cannot be read as what it should be</summary>
    public const int UTIL_NOT_PARSED = -18;
    /// <summary>the server said no</summary>
    public const int UTIL_SERVER_REFUSED = -19;
    /// <summary>not what was expected</summary>
    public const int UTIL_MISMATCH = -20;

    /// <summary>Called when report and dump of a crash are written, on the prepared thread</summary>
    [UnmanagedFunctionPointer(CallingConvention.StdCall, CharSet = CharSet.Unicode)]
    public delegate void UtilCrashHandler(string report, string dump, UIntPtr user);

    /// <summary>the process ends when all is written; see below</summary>
    public const uint UTIL_PROTECT_END = 0x1;
    /// <summary>dumps with all memory</summary>
    public const uint UTIL_PROTECT_FULL = 0x2;
    /// <summary>a message box names the report in the end, for 60 seconds at most</summary>
    public const uint UTIL_PROTECT_NOTICE = 0x4;

    /// <summary>How a process is to be protected</summary>
    [StructLayout(LayoutKind.Sequential, CharSet = CharSet.Unicode)]
    public struct UtilProtection
    {
        /// <summary>of this structure, 32 or more; what comes after is ignored</summary>
        public uint size;
        /// <summary>UTIL_PROTECT_...</summary>
        public uint flags;
        /// <summary>where reports go, made when missing; null: "Reports" in a folder of the host program's name in the user's local application data</summary>
        public string folder;
        /// <summary>shown in reports; null: the host program's name</summary>
        public string product;
        /// <summary>shown in reports; null: the host program's file version</summary>
        public string version;
        /// <summary>reports kept in the folder, the newest; 0: 10</summary>
        public uint keep;
        /// <summary>may be null</summary>
        public UtilCrashHandler after;
        /// <summary>for "after"</summary>
        public UIntPtr user;
    }

    /// <summary>Starts protection, or counts a further start: the options of the first hold until the last End</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilExHandlerStartProtection([In] ref UtilProtection options);

    /// <summary>Takes back one UtilExHandlerStartProtection</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilExHandlerEndProtection();

    /// <summary>Sets a note that each later report and dump shows, protection or not</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilExHandlerSetNote(string name, string value);

    /// <summary>Tells where a thread is, as a text of one frame a line, the innermost first, at most 64</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilDebugHelpGetStackTrace(uint thread, IntPtr context, uint skip, [MarshalAs(UnmanagedType.BStr)] ref string result);

    /// <summary>Writes the caller's frames to the diagnostic output, as lines of a group below a title</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilStackTrace(string title, uint skip, uint frames);

    /// <summary>all memory</summary>
    public const uint UTIL_DUMP_FULL = 0x1;

    /// <summary>Writes a dump of a process that goes on, for debuggers: its threads with their stacks, its modules, and the notes of this process</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilDebugHelpWriteMiniDump(string file, uint flags, uint process, uint thread, IntPtr exception);

    /// <summary>reports that are in the finished archive are removed from their folder</summary>
    public const uint UTIL_SUPPORT_TAKE = 0x1;

    /// <summary>Writes one ZIP archive that a customer can send</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilDebugHelpWriteSupportArchive(string archive, [In, MarshalAs(UnmanagedType.LPArray, ArraySubType = UnmanagedType.LPWStr)] string[] files, uint count, uint flags);

    /// <summary>Writes a line</summary>
    [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void UtilDebug(string format, string text);

    /// <summary>Writes a line with a module's tag and a change of the nesting level</summary>
    [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void UtilDebugExt(string moduleTag, int levelChange, string format, string text);
    /// <summary>Writes a line with a module's tag and a change of the nesting level</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void UtilDebugExtV(string moduleTag, int levelChange, string format, IntPtr arguments);

    /// <summary>Writes a text as it stands</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void PasDebug(string text);

    /// <summary>Writes "\nKX32UTIL['&lt;host program&gt;']: error in '&lt;where&gt;' (&lt;what&gt;): \n"</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void UtilError(string where, string what);

    /// <summary>Returns whether diagnostic output is on: not 0 while a viewer or a log file takes lines</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern uint UtilGetFlags();

    /// <summary>Shows the message box "Assertion Failure", and ends the process with exit code -1 when it is answered, in whichever way</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void UtilAssert(string expression, string file, uint line);

    /// <summary>Look for a viewer now, and end the connection to one</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern bool UtilLOGPAN4Attach();
    /// <summary>Look for a viewer now, and end the connection to one</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void UtilLOGPAN4Detach();

    /// <summary>The properties of a document: an opaque value of 32 bits, 0 for none</summary>
    public struct UtilDocInfo { public IntPtr Handle; }

    /// <summary>Reads the properties of a file, which is closed again before this returns</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern UtilDocInfo UtilDocInfoOpen(string file);

    /// <summary>Reads the properties of a document in a stream, from its beginning</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern UtilDocInfo UtilDocInfoOpenStream(IStream stream);

    /// <summary>Returns a property</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilDocInfoGet(UtilDocInfo info, string name, [MarshalAs(UnmanagedType.BStr)] ref string value);

    /// <summary>Gives properties back</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilDocInfoClose(UtilDocInfo info);

    public const int UTIL_DOWNLOAD_HTTPS_ONLY = 0x1;

    /// <summary>Called on the thread that called UtilDownloadFile: once before anything is asked, when bytes have come and at least every 100 ms, also while nothing comes, and once with done = total when the answer is complete and before the file is put in place</summary>
    [UnmanagedFunctionPointer(CallingConvention.StdCall, CharSet = CharSet.Unicode)]
    public delegate bool UtilDownloadCallback(ulong done, ulong total, UIntPtr user);
    /// <summary>Called on the thread that called UtilDownloadFile: once before anything is asked, when bytes have come and at least every 100 ms, also while nothing comes, and once with done = total when the answer is complete and before the file is put in place</summary>
    [StructLayout(LayoutKind.Sequential, CharSet = CharSet.Unicode)]
    public struct UtilDownloadOptions
    {
        /// <summary>40, or more in programs of later versions</summary>
        public uint size;
        /// <summary>UTIL_DOWNLOAD_...</summary>
        public uint flags;
        /// <summary>64 hexadecimal digits that the contents must have; null or empty: any</summary>
        public string sha256;
        /// <summary>may be null</summary>
        public UtilDownloadCallback callback;
        /// <summary>handed to the callback</summary>
        public UIntPtr user;
        /// <summary>milliseconds without a byte or answer that end it; 0: 30,000</summary>
        public uint patience;
        /// <summary>bytes at most; 0: 4 GiB</summary>
        public ulong limit;
        /// <summary>set by the call: the HTTP status of the last answer, 0: none came</summary>
        public uint status;
        /// <summary>0</summary>
        public uint reserved;
    }

    /// <summary>Fetches a file and puts it in place, in one step, when all of it is there and right</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilDownloadFile(string url, string file, ref UtilDownloadOptions options);

    /// <summary>Cuts a path into four parts that put together are the path again, to the character</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilPathSplit(string path, [MarshalAs(UnmanagedType.BStr)] ref string root, [MarshalAs(UnmanagedType.BStr)] ref string folder, [MarshalAs(UnmanagedType.BStr)] ref string name, [MarshalAs(UnmanagedType.BStr)] ref string extension);

    /// <summary>the path is a stranger's: the result must not lie outside the base</summary>
    public const uint UTIL_PATH_INSIDE = 0x1;

    /// <summary>Merges two paths: what "path" means for somebody who stands in the folder "base"</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilPathMerge(string @base, string path, uint flags, [MarshalAs(UnmanagedType.BStr)] ref string result);

    /// <summary>Makes a file's name of any text, such as a report's title</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilPathMakeName(string text, [MarshalAs(UnmanagedType.BStr)] ref string name);

    /// <summary>Expands a path that begins with a token for one of the system's folders</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilPathExpand(string path, [MarshalAs(UnmanagedType.BStr)] ref string result);

    /// <summary>Collapses a path: the longest of the system's folders that it begins with becomes its token</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilPathCollapse(string path, [MarshalAs(UnmanagedType.BStr)] ref string result);

    /// <summary>a folder</summary>
    public const uint UTIL_TEMP_FOLDER = 0x1;

    /// <summary>Makes an empty file, or a folder, that was not there before, and registers it</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilTempFileCreate(string folder, string name, uint flags, [MarshalAs(UnmanagedType.BStr)] ref string path);

    /// <summary>Registers a file that is there, or a folder with all that will be in it, to be removed like those made by UtilTempFileCreate</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilTempFileAdd(string path);

    /// <summary>Releases a registered file or folder, to stay or to be removed now</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilTempFileRelease(string path, bool keep);

    /// <summary>A job</summary>
    public struct UtilJob { public IntPtr Handle; }

    /// <summary>not a job's handle</summary>
    public const int UTIL_BAD_JOB = -2;
    /// <summary>the job still had heaps; they were reported and destroyed</summary>
    public const int UTIL_HEAPS_LEFT = -5;

    /// <summary>every call on the job and its heaps writes diagnostic lines</summary>
    public const uint UTIL_JOB_TRACE = 0x80000000;
    /// <summary>heaps of the job check their objects, unless they refuse</summary>
    public const uint UTIL_JOB_DEBUG_HEAPS = 0x40000000;

    /// <summary>Opens the job of a name, or adds a reference to the one that is open</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern UtilJob UtilJobOpen(string name, uint flags);

    /// <summary>Drops a reference to a job</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilJobClose(UtilJob job);

    /// <summary>Announce that a module of the product has been loaded or is about to be unloaded</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void UtilModuleOnAttach(string module);
    /// <summary>Announce that a module of the product has been loaded or is about to be unloaded</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void UtilModuleOnDetach(string module);

    /// <summary>Returns the library's version</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern uint UtilGetVersion(uint which);

    /// <summary>Keeps the language of the host program's user interface for the user</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilLanguageSet(uint language);

    /// <summary>Returns the language that was kept</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern uint UtilLanguageGet();

    /// <summary>A heap</summary>
    public struct UtilHeap { public IntPtr Handle; }

    /// <summary>shrinking failed; not a heap's handle</summary>
    public const int UTIL_HEAP_FAILED = -2;
    /// <summary>the system finds the heap damaged, or loses its way in it</summary>
    public const int UTIL_HEAP_CORRUPTED = -3;
    /// <summary>no object of this heap, a damaged one, or not to be freed</summary>
    public const int UTIL_HEAP_BAD_OBJECT = -6;
    /// <summary>the system lacks the service, or the heap is not DEBUG</summary>
    public const int UTIL_HEAP_NOT_SUPPORTED = -7;

    /// <summary>the system's heap takes no lock of its own</summary>
    public const uint UTIL_HEAP_UNSERIALISED = 0x10;
    /// <summary>an allocation that fails raises the system's exception</summary>
    public const uint UTIL_HEAP_EXCEPTIONS = 0x20;
    /// <summary>no report of objects left when the heap is deleted</summary>
    public const uint UTIL_HEAP_SILENT_DELETE = 0x100;

    /// <summary>the payload is zeroed</summary>
    public const uint UTIL_HEAP_ZERO = 0x1;
    /// <summary>the payload is filled with 0xF5 when it is not zeroed</summary>
    public const uint UTIL_HEAP_FILL = 0x2;
    /// <summary>a DEBUG object without a record of the call stack</summary>
    public const uint UTIL_HEAP_NO_STACK = 0x4;

    /// <summary>not DEBUG, whatever the job, the heap or UTIL_HEAP_DEBUG asks for</summary>
    public const uint UTIL_HEAP_NEVER_DEBUG = 0x40;
    /// <summary>DEBUG</summary>
    public const uint UTIL_HEAP_DEBUG = 0x40000000;

    /// <summary>Makes a heap</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern UtilHeap UtilHeapCreate(UtilJob job, string name, uint flags);

    /// <summary>Deletes a heap with all that is in it, and reports what was left</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilHeapDelete(UtilHeap heap);

    /// <summary>Has the system check the heap, or the block of one object, and checks every object of a DEBUG heap</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilHeapValidate(UtilHeap heap, IntPtr payload, uint reserved);

    /// <summary>Gives memory that the heap does not need back to the system</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilHeapShrink(UtilHeap heap, uint reserved);

    /// <summary>Return the size in bytes of the last block in use that a walk over the heap meets</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilHeapSize(UtilHeap heap);
    /// <summary>Return the size in bytes of the last block in use that a walk over the heap meets</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilHeapSizeObjects(UtilHeap heap);

    /// <summary>Allocates an object</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern IntPtr UtilHeapObjectAlloc(UtilHeap heap, int size, uint flags);
    /// <summary>Allocates an object</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern IntPtr UtilHeapObjectAllocExt(UtilHeap heap, int size, uint flags, uint tag, uint reserved);

    /// <summary>Frees an object</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilHeapObjectFree(UtilHeap heap, IntPtr payload);

    /// <summary>Returns the size of an object's payload</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilHeapObjectSize(UtilHeap heap, IntPtr payload);

    /// <summary>Masks what HTML cannot hold as character references</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void UtilMaskAllHTMLCharacters(string text, [MarshalAs(UnmanagedType.BStr)] ref string result);

    /// <summary>Resolves character references</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void UtilDemaskAllHTMLCharacters(string text, [MarshalAs(UnmanagedType.BStr)] ref string result);

    /// <summary>Turns plain text into paragraphs, one for each line</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void UtilConvertText2HTML(string text, [MarshalAs(UnmanagedType.BStr)] ref string result, bool markers);

    /// <summary>Renders HTML as plain text</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void UtilConvertHtml2PlainText(string html, [MarshalAs(UnmanagedType.BStr)] ref string result, bool markers);

    /// <summary>Returns the GDI character set that shows a text in a font, for the lfCharSet of a LOGFONT</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilGetLikelyCharsetFromString(string text);

    /// <summary>Convert a record in place from local time to UTC and back, by the system's conversion for the machine's current zone</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilLocConvertLocalTimeToUTCTime(ref SYSTEMTIME time);
    /// <summary>Convert a record in place from local time to UTC and back, by the system's conversion for the machine's current zone</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilLocConvertUTCTimeToLocalTime(ref SYSTEMTIME time);

    /// <summary>Finds when daylight time starts and ends in a year, in UTC, by the rules that the machine's zone has today</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilLocGetDSTStartAndEndInUTC(uint year, ref SYSTEMTIME start, ref SYSTEMTIME end);

    /// <summary>the date only</summary>
    public const int UTIL_DATETIME_DATE = 1;
    /// <summary>the time only; neither or both: both</summary>
    public const int UTIL_DATETIME_TIME = 2;
    /// <summary>the locale's long date instead of the short one</summary>
    public const int UTIL_DATETIME_LONG = 4;
    /// <summary>its short time instead of the one with seconds</summary>
    public const int UTIL_DATETIME_NO_SECONDS = 8;
    /// <summary>the locale's own values, not those that the user has changed</summary>
    public const int UTIL_DATETIME_NO_USER = 16;
    /// <summary>reading takes only what writing gives</summary>
    public const int UTIL_DATETIME_EXACT = 32;

    /// <summary>Writes a moment as text</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilLocLocaleStringFromSystemTime([In] ref SYSTEMTIME time, string locale, uint flags, string picture, [MarshalAs(UnmanagedType.BStr)] ref string result);

    /// <summary>Reads a text as a moment</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilLocSystemTimeFromLocaleString(string text, string locale, uint flags, string picture, ref SYSTEMTIME time);

    /// <summary>Write an OLE date as text and read one, as the two calls above do</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilDateTimeToLocaleString(double dateTime, string locale, uint flags, string picture, [MarshalAs(UnmanagedType.BStr)] ref string result);
    /// <summary>Write an OLE date as text and read one, as the two calls above do</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilDateTimeFromLocaleString(string text, string locale, uint flags, string picture, ref double dateTime);

    /// <summary>Converts an OLE date, milliseconds included, which the system's own conversion drops</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilLocDateTimeToSYSTEMTIME(double dateTime, ref SYSTEMTIME time);

    /// <summary>a member of the European Union</summary>
    public const int UTIL_COUNTRY_EU = 1;
    /// <summary>paper is US letter, not A4</summary>
    public const int UTIL_COUNTRY_US_LETTER = 2;
    /// <summary>miles, gallons; neither this nor the next: metric</summary>
    public const int UTIL_COUNTRY_US_MEASURES = 4;
    /// <summary>metric, but miles and pints</summary>
    public const int UTIL_COUNTRY_UK_MEASURES = 8;
    /// <summary>The 249 countries of ISO 3166-1 and Kosovo, and the 184 languages of ISO 639-1 with traditional Chinese and Serbian in Latin letters</summary>
    [StructLayout(LayoutKind.Sequential, CharSet = CharSet.Unicode)]
    public struct UtilLocCountry
    {
        /// <summary>bytes: sizeof(UtilLocCountry)</summary>
        public uint size;
        /// <summary>ISO 3166-1: DE</summary>
        [MarshalAs(UnmanagedType.ByValTStr, SizeConst = 4)]
        public string code2;
        /// <summary>DEU; Kosovo has XKK</summary>
        [MarshalAs(UnmanagedType.ByValTStr, SizeConst = 4)]
        public string code3;
        /// <summary>276; Kosovo has 983</summary>
        public uint number;
        /// <summary>ISO 4217: EUR. Of several that are legal tender, the newest; empty: none</summary>
        [MarshalAs(UnmanagedType.ByValTStr, SizeConst = 4)]
        public string currency;
        /// <summary>UTIL_COUNTRY_...</summary>
        public uint flags;
        /// <summary>of the week: 0 is Monday, 6 Sunday</summary>
        public uint firstDay;
        /// <summary>the official one that most speak, by its tag; empty where nobody lives</summary>
        [MarshalAs(UnmanagedType.ByValTStr, SizeConst = 12)]
        public string language;
        /// <summary>in the language that was asked for</summary>
        [MarshalAs(UnmanagedType.ByValTStr, SizeConst = 96)]
        public string name;
        /// <summary>in its own language; English where it has none</summary>
        [MarshalAs(UnmanagedType.ByValTStr, SizeConst = 96)]
        public string nativeName;
    }
    public const int UTIL_LANGUAGE_RIGHT_TO_LEFT = 1;
    /// <summary>The 249 countries of ISO 3166-1 and Kosovo, and the 184 languages of ISO 639-1 with traditional Chinese and Serbian in Latin letters</summary>
    [StructLayout(LayoutKind.Sequential, CharSet = CharSet.Unicode)]
    public struct UtilLocLanguage
    {
        /// <summary>bytes: sizeof(UtilLocLanguage)</summary>
        public uint size;
        /// <summary>de, zh-Hant</summary>
        [MarshalAs(UnmanagedType.ByValTStr, SizeConst = 16)]
        public string tag;
        /// <summary>ISO 639-2/T: deu</summary>
        [MarshalAs(UnmanagedType.ByValTStr, SizeConst = 4)]
        public string code3;
        /// <summary>ISO 15924: Latn</summary>
        [MarshalAs(UnmanagedType.ByValTStr, SizeConst = 6)]
        public string script;
        /// <summary>with the usual sub-language: 0x0407; 0: Windows has none</summary>
        public uint langId;
        /// <summary>the ANSI one; 0: Unicode only</summary>
        public uint codePage;
        /// <summary>of this code page, for the lfCharSet of a LOGFONT; without one 1, the default</summary>
        public uint charset;
        /// <summary>UTIL_LANGUAGE_...</summary>
        public uint flags;
        /// <summary>in the language that was asked for</summary>
        [MarshalAs(UnmanagedType.ByValTStr, SizeConst = 96)]
        public string name;
        /// <summary>in itself</summary>
        [MarshalAs(UnmanagedType.ByValTStr, SizeConst = 96)]
        public string nativeName;
    }

    /// <summary>Lists all countries with their names in a language, in its alphabetical order</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilLocGetCountryList(string language, [In, Out] UtilLocCountry[] list, uint count);

    /// <summary>Tells what is known about a country</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilLocGetCountryInfo(string country, string language, ref UtilLocCountry info);

    /// <summary>Tells what is known about a language</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilLocGetLanguageInfo(string language, string inLanguage, ref UtilLocLanguage info);

    /// <summary>A thread's acting for another user: an opaque value of 32 bits, 0 for none</summary>
    public struct UtilImpersonation { public IntPtr Handle; }

    public const uint UTIL_LOGON_NETWORK = 0x1;

    /// <summary>Logs a user on and lets the calling thread act for him</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern UtilImpersonation UtilImpersonateUser(string account, string password, uint flags);

    /// <summary>Lets the calling thread act by a copy of a token</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern UtilImpersonation UtilImpersonateToken(IntPtr token);

    /// <summary>Ends the newest impersonation of the calling thread: the thread has the token that it had before, or none</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilImpersonateEnd(UtilImpersonation impersonation);

    /// <summary>Returns the SID of an account, "S-1-5-21-..."</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilSidFromAccount(string account, [MarshalAs(UnmanagedType.BStr)] ref string sid);

    /// <summary>Returns the account that a SID belongs to: "DOMAIN\name", or "name" for one without domain</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilAccountFromSid(string sid, [MarshalAs(UnmanagedType.BStr)] ref string account);

    /// <summary>Tells whether the user that the calling thread acts for belongs to a group with effect: the group is enabled, and not only there to deny</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilIsMember(string group);

    /// <summary>contents, attributes, the list of a folder</summary>
    public const uint UTIL_ACCESS_READ = 0x1;
    /// <summary>contents; in folders new files and folders</summary>
    public const uint UTIL_ACCESS_WRITE = 0x2;
    /// <summary>run a program, pass through a folder</summary>
    public const uint UTIL_ACCESS_EXECUTE = 0x4;
    /// <summary>remove the file or folder itself</summary>
    public const uint UTIL_ACCESS_DELETE = 0x8;
    /// <summary>the list of rights, and the owner</summary>
    public const uint UTIL_ACCESS_CHANGE_RIGHTS = 0x10;

    /// <summary>Tells whether the user that the calling thread acts for has all of some rights to a file or folder, by what the system keeps with it</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilCheckAccess(string path, uint rights);

    /// <summary>Gives an account exactly these rights to a file, or to a folder with all below that inherits from it</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilGrantAccess(string path, string account, uint rights);

    /// <summary>Returns the path by which another computer reaches the same: "X:\a" as "\\server\share\a" where X leads to "\\server\share", whether or not the connection is up</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilPathToNetwork(string path, [MarshalAs(UnmanagedType.BStr)] ref string network);

    /// <summary>Returns the path of the same on this computer: by the drive that leads to it or nearest above it, else by the folder that this computer shares, where it is this computer's share</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilPathToLocal(string network, [MarshalAs(UnmanagedType.BStr)] ref string path);

    /// <summary>Formats into a buffer and never writes past its end: what does not fit is cut</summary>
    [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilSafeSprintf(StringBuilder destination, uint size, string format, string text);

    /// <summary>Copies a text with its terminator</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern IntPtr UtilStrcpy(IntPtr destination, IntPtr source);

    /// <summary>Copies at most size - 1 characters and always terminates</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern IntPtr UtilStrncpy(IntPtr destination, IntPtr source, uint size);

    /// <summary>Appends a text, which may be the destination itself</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern IntPtr UtilStrcat(IntPtr destination, IntPtr source);

    /// <summary>Copies bytes</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern IntPtr UtilMemcpy(IntPtr destination, IntPtr source, uint bytes);

    /// <summary>Fills bytes with the low 8 bits of a value</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern IntPtr UtilMemset(IntPtr destination, int value, uint bytes);

    /// <summary>Returns the number of characters before the terminator</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern uint UtilStrlen(string @string);

    /// <summary>Returns what UtilStrlen does</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern uint UtilSafeStrlen(uint reserved, string @string);

    /// <summary>Compares by UTF-16 unit</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilStrcmp(string a, string b);

    /// <summary>Compares at most count characters by UTF-16 unit</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilStrncmp(string a, string b, uint count);

    /// <summary>Compare without regard to case, at most count characters, as _wcsicmp and _wcsnicmp of msvcrt.dll do: in lower case, by that runtime's locale for characters beyond ASCII</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilStricmp(string a, string b);
    /// <summary>Compare without regard to case, at most count characters, as _wcsicmp and _wcsnicmp of msvcrt.dll do: in lower case, by that runtime's locale for characters beyond ASCII</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilStrnicmp(string a, string b, uint count);

    /// <summary>Finds the first occurrence of a part</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern IntPtr UtilStrstr(IntPtr @string, IntPtr part);

    /// <summary>Find the first or last occurrence of a character</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern IntPtr UtilStrchr(IntPtr @string, char character);
    /// <summary>Find the first or last occurrence of a character</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern IntPtr UtilStrrchr(IntPtr @string, char character);

    /// <summary>Remove blanks at the beginning, at the end, at both</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void UtilLtrim(StringBuilder @string);
    /// <summary>Remove blanks at the beginning, at the end, at both</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void UtilRtrim(StringBuilder @string);
    /// <summary>Remove blanks at the beginning, at the end, at both</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern void UtilAtrim(StringBuilder @string);

    /// <summary>Removes characters and puts others in their place</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilStuff(StringBuilder @string, uint position, uint count, string insertion);

    /// <summary>Keeps a part of a string, moved to its front</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilSubstr(StringBuilder @string, int start, uint count);

    /// <summary>Always return 1: kept for callers that ask whether a pointer is readable, writable, a text of a size</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern bool UtilIsRPtr(IntPtr pointer, uint size);
    /// <summary>Always return 1: kept for callers that ask whether a pointer is readable, writable, a text of a size</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern bool UtilIsWPtr(IntPtr pointer, uint size);
    /// <summary>Always return 1: kept for callers that ask whether a pointer is readable, writable, a text of a size</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern bool UtilIsString(string pointer, uint size);

    /// <summary>there are more bytes than the destination holds</summary>
    public const int UTIL_CONVERT_TOO_LARGE = -1;
    /// <summary>an argument is missing or no block, or a stream cannot be made</summary>
    public const int UTIL_CONVERT_NO_ARGUMENT = -2;
    /// <summary>a stream or memory fails, or there are too many bytes</summary>
    public const int UTIL_CONVERT_FAILED = -4;
    /// <summary>the text does not fit into the destination</summary>
    public const int UTIL_CONVERT_TOO_SMALL = -44;

    /// <summary>Turn bytes into text</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilConvertBLOBToString(byte[] bytes, uint byteCount, StringBuilder destination, uint size, bool compress);
    /// <summary>Turn bytes into text</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilConvertStreamToString(IStream stream, StringBuilder destination, uint size, bool compress);
    /// <summary>Turn bytes into text</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilConvertHGLOBALToString(IntPtr block, StringBuilder destination, uint size, bool compress);

    /// <summary>Turns text into bytes</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilConvertStringToBLOB(string text, byte[] destination, uint size);

    /// <summary>Turns text into bytes, and writes them to a stream where it stands</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilConvertStringToStream(string text, IStream stream);

    /// <summary>Turns text into a movable global memory block of exactly its bytes</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilConvertStringToHGLOBAL(string text, ref IntPtr @out);

    /// <summary>A pool: an opaque value of 32 bits, 0 for none</summary>
    public struct UtilThreadPool { public IntPtr Handle; }

    /// <summary>to do its work</summary>
    public const uint UTIL_POOL_RUN = 0;
    /// <summary>it will never run: it frees what "user" leads to</summary>
    public const uint UTIL_POOL_DISCARDED = 1;

    /// <summary>A job</summary>
    [UnmanagedFunctionPointer(CallingConvention.StdCall, CharSet = CharSet.Unicode)]
    public delegate void UtilThreadPoolJob(uint reason, UIntPtr user, IntPtr abort);

    /// <summary>jobs run one step below normal priority</summary>
    public const uint UTIL_POOL_BACKGROUND = 0x1;

    /// <summary>Opens a pool</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern UtilThreadPool UtilThreadPoolOpen(string name, uint threads, uint flags);

    /// <summary>Adds a job</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilThreadPoolAdd(UtilThreadPool pool, UtilThreadPoolJob job, UIntPtr user);

    /// <summary>Aborts a pool: jobs that wait are discarded, and it takes no more until it is finalised</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilThreadPoolAbort(UtilThreadPool pool);

    public const uint UTIL_POOL_FOREVER = 0xFFFFFFFF;

    /// <summary>Waits until a pool is idle</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilThreadPoolFinalize(UtilThreadPool pool, uint milliseconds);

    /// <summary>Closes a pool: aborts it, waits without end as Finalize does, and makes the handle invalid</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilThreadPoolClose(UtilThreadPool pool);

    /// <summary>A help file of the program: an opaque value of 32 bits, 0 for none</summary>
    public struct UtilHelp { public IntPtr Handle; }

    /// <summary>Names a help file</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern UtilHelp UtilHelpOpen(IntPtr owner, string file);

    /// <summary>Show a page of a help file: by its name in the file, by its number, by a word of the index</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilHelpShowTopic(UtilHelp help, string topic);
    /// <summary>Show a page of a help file: by its name in the file, by its number, by a word of the index</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilHelpShowContext(UtilHelp help, uint id);
    /// <summary>Show a page of a help file: by its name in the file, by its number, by a word of the index</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilHelpShowKeyword(UtilHelp help, string keyword);

    /// <summary>Closes a help file</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilHelpClose(UtilHelp help);

    /// <summary>A subclass of a window: a procedure that sees the window's messages before the window does</summary>
    public struct UtilSubclass { public IntPtr Handle; }

    /// <summary>Called on the window's thread for each message</summary>
    [UnmanagedFunctionPointer(CallingConvention.StdCall, CharSet = CharSet.Unicode)]
    public delegate IntPtr UtilWindowProc(UtilSubclass subclass, IntPtr window, uint message, UIntPtr w, IntPtr l, UIntPtr user);

    /// <summary>Subclasses a window of the calling thread</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern UtilSubclass UtilWindowSubclass(IntPtr window, UtilWindowProc proc, UIntPtr user);

    /// <summary>Passes a message on to the subclass before this one, and at last to the window's own procedure</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern IntPtr UtilWindowCallNext(UtilSubclass subclass, IntPtr window, uint message, UIntPtr w, IntPtr l);

    /// <summary>Removes a subclass, in any order, at any time, from within procedures, too</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilWindowUnsubclass(UtilSubclass subclass);

    /// <summary>A hook</summary>
    public struct UtilHook { public IntPtr Handle; }

    /// <summary>Called for what happens to the windows of the hook's thread</summary>
    [UnmanagedFunctionPointer(CallingConvention.StdCall, CharSet = CharSet.Unicode)]
    public delegate IntPtr UtilCBTProc(UtilHook hook, int code, UIntPtr w, IntPtr l, UIntPtr user);

    /// <summary>Called when the user has pressed Ctrl+Break: once a press, however long the keys are held</summary>
    [UnmanagedFunctionPointer(CallingConvention.StdCall, CharSet = CharSet.Unicode)]
    public delegate bool UtilBreakProc(UtilHook hook, UIntPtr user);

    /// <summary>Hooks the calling thread: the procedure is asked before the system creates, activates, moves, sizes or destroys a window of this thread</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern UtilHook UtilHookCBT(UtilCBTProc proc, UIntPtr user);

    /// <summary>Hooks Ctrl+Break</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern UtilHook UtilHookCtrlBreak(UtilBreakProc proc, UIntPtr user);

    /// <summary>Tells how often Ctrl+Break was seen since this was last asked</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilHookBreakSeen(UtilHook hook);

    /// <summary>Closes a hook</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilHookClose(UtilHook hook);

    /// <summary>Names a window message, for logs</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilWindowMessageName(uint message, IntPtr window, [MarshalAs(UnmanagedType.BStr)] ref string result);

    /// <summary>notes a handle that the caller has made</summary>
    public const uint UTIL_HANDLES_ADD = 1;
    /// <summary>takes out a handle that the caller frees</summary>
    public const uint UTIL_HANDLES_REMOVE = 2;
    /// <summary>counts entries</summary>
    public const uint UTIL_HANDLES_COUNT = 3;
    /// <summary>looks for handles that have been freed and not taken out</summary>
    public const uint UTIL_HANDLES_CHECK = 4;
    /// <summary>gives the present moment a number</summary>
    public const uint UTIL_HANDLES_MARK = 5;
    /// <summary>reports entries in diagnostic lines</summary>
    public const uint UTIL_HANDLES_REPORT = 6;

    /// <summary>pens, brushes, fonts, bitmaps, regions, palettes, DCs, metafiles</summary>
    public const uint UTIL_HANDLE_GDI = 1;
    /// <summary>icons and cursors</summary>
    public const uint UTIL_HANDLE_ICON = 2;
    /// <summary>menus</summary>
    public const uint UTIL_HANDLE_MENU = 3;
    /// <summary>windows</summary>
    public const uint UTIL_HANDLE_WINDOW = 4;
    /// <summary>all that CloseHandle closes</summary>
    public const uint UTIL_HANDLE_KERNEL = 5;

    /// <summary>Keeps the process's list of handles: which are there, who made them, which were freed twice</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilHandleListMgr(uint command, IntPtr handle, uint kind, string label);

    /// <summary>An archive that is being made</summary>
    public struct UtilZip { public IntPtr Handle; }

    public const uint UTIL_ZIP_IS_FOLDER = 0x1;
    public const uint UTIL_ZIP_IS_ENCRYPTED = 0x2;
    /// <summary>a symbolic link of another system, which is never made</summary>
    public const uint UTIL_ZIP_IS_LINK = 0x4;
    /// <summary>the target differs from the name: Windows could not have it</summary>
    public const uint UTIL_ZIP_IS_RENAMED = 0x8;
    /// <summary>asks whether the entry is wanted; without it this is progress</summary>
    public const uint UTIL_ZIP_IS_QUESTION = 0x10;

    /// <summary>An entry as a callback is shown it</summary>
    [StructLayout(LayoutKind.Sequential, CharSet = CharSet.Unicode)]
    public struct UtilZipEntry
    {
        /// <summary>of the structure; later versions may have more</summary>
        public uint size;
        /// <summary>UTIL_ZIP_IS_...</summary>
        public uint flags;
        /// <summary>in the archive, "/" between components; a folder's ends with "/"</summary>
        public string name;
        /// <summary>unpacking into a folder: the full path that will be written; else null</summary>
        public string target;
        /// <summary>unpacked; of a stream that is added 0 until all of it is</summary>
        public ulong bytes;
        /// <summary>in the archive; while it is added, what has been written of it so far</summary>
        public ulong packed;
        /// <summary>bytes of this entry that are handled</summary>
        public ulong done;
        /// <summary>UTC; 0 when it is not known</summary>
        public FILETIME modified;
        /// <summary>of the entry, from 0, as the archive lists them</summary>
        public uint index;
        /// <summary>of entries in the archive; 0 while entries are added</summary>
        public uint count;
    }

    public const int UTIL_ZIP_GO = 0;
    /// <summary>not this one: to a question only, else it counts as UTIL_ZIP_GO</summary>
    public const int UTIL_ZIP_SKIP = 1;

    /// <summary>Called on the thread of the call that it belongs to, with no lock held</summary>
    [UnmanagedFunctionPointer(CallingConvention.StdCall, CharSet = CharSet.Unicode)]
    public delegate int UtilZipCallback([In] ref UtilZipEntry entry, UIntPtr user);

    /// <summary>UtilZIPCreate: nothing is compressed</summary>
    public const uint UTIL_ZIP_STORE = 0x1;
    /// <summary>UtilExtractZip: a file that is there stays, its entry is skipped</summary>
    public const uint UTIL_ZIP_KEEP_EXISTING = 0x10;

    /// <summary>32 bytes</summary>
    [StructLayout(LayoutKind.Sequential, CharSet = CharSet.Unicode)]
    public struct UtilZipOptions
    {
        /// <summary>of the structure: 32, or more when a later one is given</summary>
        public uint size;
        /// <summary>UTIL_ZIP_..., of the call that they are given to</summary>
        public uint flags;
        /// <summary>null or empty: none</summary>
        public string password;
        /// <summary>null: all entries are wanted</summary>
        public UtilZipCallback callback;
        /// <summary>handed to the callback</summary>
        public UIntPtr user;
        /// <summary>0</summary>
        public uint reserved;
        /// <summary>UtilExtractZip: bytes that may be unpacked in all; 0: 4 GiB</summary>
        public ulong limit;
    }

    /// <summary>Begins an archive</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern UtilZip UtilZIPCreate(string file, [In] ref UtilZipOptions options);

    /// <summary>Adds a file, or a folder with all below it, hidden files and empty folders too</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilZIPAppend(UtilZip zip, string source, string name);

    /// <summary>Adds files and folders under their own names</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilZIPAppendList(UtilZip zip, [In, MarshalAs(UnmanagedType.LPArray, ArraySubType = UnmanagedType.LPWStr)] string[] sources, uint count, string folder);

    /// <summary>Adds what a stream holds, from its beginning, or from where it stands if it cannot seek, to its end</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilZIPAppendStream(UtilZip zip, IStream stream, string name, [In] ref FILETIME modified);

    /// <summary>Ends an archive</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilZIPClose(UtilZip zip, bool keep);

    /// <summary>Lists, tests or unpacks an archive</summary>
    [DllImport(Dll, CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
    public static extern int UtilExtractZip(string file, string folder, [In] ref UtilZipOptions options);

    public const string LOGPAN_SHARED_INFO_LOCAL = @"Local\LOGPANSharedData";
    public const string LOGPAN_SHARED_INFO_GLOBAL = @"Global\LOGPANSharedData";

    /// <summary>Published by the viewer, read by senders before every line</summary>
    [StructLayout(LayoutKind.Sequential, CharSet = CharSet.Unicode)]
    public struct LogpanSharedInfo
    {
        /// <summary>bytes of the structure: 24, or more when a viewer adds fields of its own</summary>
        public uint size;
        /// <summary>UDP port on the loopback address (IPv4), host byte order; 0: none</summary>
        public uint port;
        /// <summary>not 0: the viewer wants lines</summary>
        public ulong mask;
        /// <summary>bytes of the largest datagram that it takes, header included; less than 512 counts as 512, more than 65507 as 65507</summary>
        public uint largestDatagram;
        /// <summary>the viewer's window, or 0</summary>
        public uint window;
    }
    public const int LOGPAN_TAG_LENGTH = 32;

    /// <summary>The first bytes of every datagram</summary>
    [StructLayout(LayoutKind.Sequential, CharSet = CharSet.Unicode)]
    public struct LogpanPacketHeader
    {
        /// <summary>112</summary>
        public uint headerSize;
        /// <summary>local time of the line</summary>
        public SYSTEMTIME time;
        /// <summary>the module's tag, terminated; empty: none</summary>
        [MarshalAs(UnmanagedType.ByValTStr, SizeConst = 32)]
        public string tag;
        /// <summary>the writing thread's id</summary>
        public uint thread;
        /// <summary>the processor it ran on</summary>
        public uint processor;
        /// <summary>'0' to '9': the last digit of the process's line counter</summary>
        public uint sequence;
        /// <summary>0</summary>
        public uint reserved;
        /// <summary>1: a line</summary>
        public uint kind;
        /// <summary>0</summary>
        public uint subKind;
        /// <summary>bytes of UTF-16 text after the header, not terminated. A line's first text begins with its indentation, a blank a level.</summary>
        public uint textBytes;
    }

    public const string LOGPAN_MAILSLOT = @"\\.\mailslot\logpan";
    /// <summary>a mapping of 4 bytes: the viewer's window</summary>
    public const string LOGPAN_GLOBAL_DATA = @"LOGPANGlobalData";
    /// <summary>its class</summary>
    public const string LOGPAN_WINDOW_CLASS = @"QmzClsLOGPAN16";
}
