"""Made by scripts/bindings from the headers. docs/other-languages.md tells how to use it."""
from ctypes import *
from types import SimpleNamespace


class BSTR(c_void_p):
    """A text that a call returns: handed over by byref(), read by str(), freed with this object."""

    def __str__(self):
        return wstring_at(self.value, windll.oleaut32.SysStringLen(self)) if self.value else ""

    def __del__(self):
        windll.oleaut32.SysFreeString(self)


class VARIANT(Structure):
    _fields_ = [("vt", c_ushort), ("reserved", c_ushort * 3), ("data", c_ulonglong)]


class POINT(Structure):
    _fields_ = [
        ("x", c_int),
        ("y", c_int),
    ]


class RECT(Structure):
    _fields_ = [
        ("left", c_int),
        ("top", c_int),
        ("right", c_int),
        ("bottom", c_int),
    ]


class FILETIME(Structure):
    _fields_ = [
        ("dwLowDateTime", c_uint),
        ("dwHighDateTime", c_uint),
    ]


class SYSTEMTIME(Structure):
    _fields_ = [
        ("wYear", c_ushort),
        ("wMonth", c_ushort),
        ("wDayOfWeek", c_ushort),
        ("wDay", c_ushort),
        ("wHour", c_ushort),
        ("wMinute", c_ushort),
        ("wSecond", c_ushort),
        ("wMilliseconds", c_ushort),
    ]


# The version of these headers, for callers and for resource scripts. The build takes
TVUT22_VERSION_MAJOR = 22
TVUT22_VERSION_MINOR = 10
TVUT22_VERSION_TEXT = '22.10'
TVUT22_VERSION = 0x16000a


# One open profile
class ProfJob(c_void_p):
    pass


# One list inside a job's tree
class ProfList(c_void_p):
    pass


# Results
PROF_OK = 0  # success
PROF_OPEN_FAILED = -1  # open: not a valid file name, or the file could not be opened
PROF_CONVERT_FAILED = -2  # ProfAppendFiles: a file could not be read or kept
PROF_EXCLUSIVE_FAILED = -3  # open: an exclusive open failed, other than by sharing
PROF_CLIPBOARD_FAILED = -3  # ProfSaveToClipboard: no clipboard or no temporary file
PROF_SAVE_FAILED = -4  # save: the profile could not be written
PROF_DECODE_FAILED = -4  # ProfGetStream, ProfGetFile: not decoded or not written
PROF_INVALID_JOB = -5  # ProfGetError, ProfDebugList, ProfCopyList: invalid job handle
PROF_NOT_FOUND = -6  # Get: no such item (typed Get: or its text is empty)
PROF_LOAD_FAILED = -7  # open: the contents could not be parsed
PROF_COPY_FAILED = -8  # ProfCopyList: failed or stopped
PROF_NO_GLOBAL_MEMORY = -8  # ProfSaveToClipboard: no memory that the clipboard would take
PROF_NOT_PARSED = -9  # Get: the item's text is not of the type asked for
PROF_LOCKED = -10  # open: locked by others for 10 seconds, or it could not be read


# Save flags, low four bits: the form
PROF_FORM_TEXT = 0x0
PROF_FORM_XML = 0x1
PROF_FORM_XFDF = 0x2


# Save flags, further bits
PROF_SAVE_COMPRESSED = 0x40  # always write the compressed wrapper
PROF_SAVE_COMPRESSED_AS_READ = 0x80  # ... if the profile was read from a compressed one


# Flags of ProfJobOpenStreamObject
PROF_READ_FOREIGN_XFDF = 0x1  # read XFDF as other programs write it
PROF_READ_PLAIN_INI = 0x2  # every [section] is a list of the root list
PROF_READ_FOREIGN_XML = 0x4  # read the XML form as other XML programs leave it


# Options of ProfSetOption and ProfGetOption
PROF_OPTION_CODE_PAGE = 1  # code page of the A forms and of 8-bit files; first: GetACP()


# Called once an entry by ProfEnum
ProfEnumCallbackA = WINFUNCTYPE(c_int, ProfJob, c_char_p, c_char_p, ProfList, c_uint)  # (job, name, value, subList, user)
ProfEnumCallbackW = WINFUNCTYPE(c_int, ProfJob, c_wchar_p, c_wchar_p, ProfList, c_uint)  # (job, name, value, subList, user)


# Util: results that calls of several families share. A name means the same in all of them
UTIL_OK = 0  # success
UTIL_YES = 1  # an answer
UTIL_NO = 0  # an answer
UTIL_BAD_ARGUMENT = -2  # null where something is wanted, an unknown flag, no handle of this kind
UTIL_NO_ACCESS = -3  # denied, or in use by somebody
UTIL_FAILED = -4  # the system failed, or memory has run out
UTIL_DAMAGED = -5  # not what it claims to be
UTIL_NOT_FOUND = -6  # there is no such thing
UTIL_TOO_LARGE = -7  # beyond a bound
UTIL_NOT_SUPPORTED = -8  # of a kind that is not known
UTIL_CANCELLED = -9  # a callback or an abort wanted it
UTIL_UNSAFE = -10  # it would lead where it must not: out of the folder, from https to http
UTIL_BAD_PASSWORD = -11  # missing or wrong
UTIL_EXISTS = -12  # it is there already
UTIL_JOBS_LEFT = -13  # jobs were discarded
UTIL_FROM_JOB = -14  # not possible from within a job
UTIL_IN_LOADER = -15  # not possible while the thread loads or unloads a library
UTIL_TIMEOUT = -16  # the time is over
UTIL_WRONG_THREAD = -17  # another thread has to make this call
UTIL_NOT_PARSED = -18  # the text cannot be read as what it should be
UTIL_SERVER_REFUSED = -19  # the server said no
UTIL_MISMATCH = -20  # not what was expected


# Called when report and dump of a crash are written, on the prepared thread
UtilCrashHandler = WINFUNCTYPE(None, c_wchar_p, c_wchar_p, c_uint)  # (report, dump, user)


# Flags of UtilProtection
UTIL_PROTECT_END = 0x1  # the process ends when all is written; see below
UTIL_PROTECT_FULL = 0x2  # dumps with all memory
UTIL_PROTECT_NOTICE = 0x4  # a message box names the report in the end, for 60 seconds at most


# How a process is to be protected
class UtilProtection(Structure):
    _fields_ = [
        ("size", c_uint),  # of this structure, 32 or more; what comes after is ignored
        ("flags", c_uint),  # UTIL_PROTECT_...
        ("folder", c_wchar_p),  # where reports go, made when missing; null: "Reports" in a folder of the host program's name in the user's local application data
        ("product", c_wchar_p),  # shown in reports; null: the host program's name
        ("version", c_wchar_p),  # shown in reports; null: the host program's file version
        ("keep", c_uint),  # reports kept in the folder, the newest; 0: 10
        ("after", UtilCrashHandler),  # may be null
        ("user", c_uint),  # for "after"
    ]


# Flag of UtilDebugHelpWriteMiniDump
UTIL_DUMP_FULL = 0x1  # all memory


# Support archive
UTIL_SUPPORT_TAKE = 0x1  # reports that are in the finished archive are removed from their folder


# The properties of a document: an opaque value of 32 bits, 0 for none
class UtilDocInfo(c_void_p):
    pass


# The address and every redirection must be https
UTIL_DOWNLOAD_HTTPS_ONLY = 0x1


# Called on the thread that called UtilDownloadFile: once before anything is asked, when bytes have come and at least every 100 ms, also while nothing comes, and once with done = total when the answer is complete and before the file is put in place
UtilDownloadCallback = WINFUNCTYPE(c_int, c_ulonglong, c_ulonglong, c_uint)  # (done, total, user)
class UtilDownloadOptions(Structure):
    _fields_ = [
        ("size", c_uint),  # 40, or more in programs of later versions
        ("flags", c_uint),  # UTIL_DOWNLOAD_...
        ("sha256", c_wchar_p),  # 64 hexadecimal digits that the contents must have; null or empty: any
        ("callback", UtilDownloadCallback),  # may be null
        ("user", c_uint),  # handed to the callback
        ("patience", c_uint),  # milliseconds without a byte or answer that end it; 0: 30,000
        ("limit", c_ulonglong),  # bytes at most; 0: 4 GiB
        ("status", c_uint),  # set by the call: the HTTP status of the last answer, 0: none came
        ("reserved", c_uint),  # 0
    ]


# Flag of UtilPathMerge
UTIL_PATH_INSIDE = 0x1  # the path is a stranger's: the result must not lie outside the base


# Flag of UtilTempFileCreate
UTIL_TEMP_FOLDER = 0x1  # a folder


# A job
class UtilJob(c_void_p):
    pass


# Results: UTIL_OK, and
UTIL_BAD_JOB = -2  # not a job's handle
UTIL_HEAPS_LEFT = -5  # the job still had heaps; they were reported and destroyed


# Flags of UtilJobOpen
UTIL_JOB_TRACE = 0x80000000  # every call on the job and its heaps writes diagnostic lines
UTIL_JOB_DEBUG_HEAPS = 0x40000000  # heaps of the job check their objects, unless they refuse


# A heap
class UtilHeap(c_void_p):
    pass


# Results
UTIL_HEAP_FAILED = -2  # shrinking failed; not a heap's handle
UTIL_HEAP_CORRUPTED = -3  # the system finds the heap damaged, or loses its way in it
UTIL_HEAP_BAD_OBJECT = -6  # no object of this heap, a damaged one, or not to be freed
UTIL_HEAP_NOT_SUPPORTED = -7  # the system lacks the service, or the heap is not DEBUG


# Of heaps
UTIL_HEAP_UNSERIALISED = 0x10  # the system's heap takes no lock of its own
UTIL_HEAP_EXCEPTIONS = 0x20  # an allocation that fails raises the system's exception
UTIL_HEAP_SILENT_DELETE = 0x100  # no report of objects left when the heap is deleted


# Of allocations
UTIL_HEAP_ZERO = 0x1  # the payload is zeroed
UTIL_HEAP_FILL = 0x2  # the payload is filled with 0xF5 when it is not zeroed
UTIL_HEAP_NO_STACK = 0x4  # a DEBUG object without a record of the call stack


# Of both
UTIL_HEAP_NEVER_DEBUG = 0x40  # not DEBUG, whatever the job, the heap or UTIL_HEAP_DEBUG asks for
UTIL_HEAP_DEBUG = 0x40000000  # DEBUG


# Rules that hold for the calls of this group and are not repeated there:
UTIL_DATETIME_DATE = 1  # the date only
UTIL_DATETIME_TIME = 2  # the time only; neither or both: both
UTIL_DATETIME_LONG = 4  # the locale's long date instead of the short one
UTIL_DATETIME_NO_SECONDS = 8  # its short time instead of the one with seconds
UTIL_DATETIME_NO_USER = 16  # the locale's own values, not those that the user has changed
UTIL_DATETIME_EXACT = 32  # reading takes only what writing gives


# The 249 countries of ISO 3166-1 and Kosovo, and the 184 languages of ISO 639-1 with traditional Chinese and Serbian in Latin letters
UTIL_COUNTRY_EU = 1  # a member of the European Union
UTIL_COUNTRY_US_LETTER = 2  # paper is US letter, not A4
UTIL_COUNTRY_US_MEASURES = 4  # miles, gallons; neither this nor the next: metric
UTIL_COUNTRY_UK_MEASURES = 8  # metric, but miles and pints
class UtilLocCountry(Structure):
    _fields_ = [
        ("size", c_uint),  # bytes: sizeof(UtilLocCountry)
        ("code2", c_wchar * 4),  # ISO 3166-1: DE
        ("code3", c_wchar * 4),  # DEU; Kosovo has XKK
        ("number", c_uint),  # 276; Kosovo has 983
        ("currency", c_wchar * 4),  # ISO 4217: EUR. Of several that are legal tender, the newest; empty: none
        ("flags", c_uint),  # UTIL_COUNTRY_...
        ("firstDay", c_uint),  # of the week: 0 is Monday, 6 Sunday
        ("language", c_wchar * 12),  # the official one that most speak, by its tag; empty where nobody lives
        ("name", c_wchar * 96),  # in the language that was asked for
        ("nativeName", c_wchar * 96),  # in its own language; English where it has none
    ]
UTIL_LANGUAGE_RIGHT_TO_LEFT = 1
class UtilLocLanguage(Structure):
    _fields_ = [
        ("size", c_uint),  # bytes: sizeof(UtilLocLanguage)
        ("tag", c_wchar * 16),  # de, zh-Hant
        ("code3", c_wchar * 4),  # ISO 639-2/T: deu
        ("script", c_wchar * 6),  # ISO 15924: Latn
        ("langId", c_uint),  # with the usual sub-language: 0x0407; 0: Windows has none
        ("codePage", c_uint),  # the ANSI one; 0: Unicode only
        ("charset", c_uint),  # of this code page, for the lfCharSet of a LOGFONT; without one 1, the default
        ("flags", c_uint),  # UTIL_LANGUAGE_...
        ("name", c_wchar * 96),  # in the language that was asked for
        ("nativeName", c_wchar * 96),  # in itself
    ]


# A thread's acting for another user: an opaque value of 32 bits, 0 for none
class UtilImpersonation(c_void_p):
    pass


# Flag of UtilImpersonateUser: calls on this computer stay those of the caller, and only connections to others are made as the account, also one of a domain that this computer does not know
UTIL_LOGON_NETWORK = 0x1


# Access rights
UTIL_ACCESS_READ = 0x1  # contents, attributes, the list of a folder
UTIL_ACCESS_WRITE = 0x2  # contents; in folders new files and folders
UTIL_ACCESS_EXECUTE = 0x4  # run a program, pass through a folder
UTIL_ACCESS_DELETE = 0x8  # remove the file or folder itself
UTIL_ACCESS_CHANGE_RIGHTS = 0x10  # the list of rights, and the owner


# The text form of bytes is what items of a profile hold: Base64 without line breaks, or "@2@" and the Base64 of the bytes compressed by zlib
UTIL_CONVERT_TOO_LARGE = -1  # there are more bytes than the destination holds
UTIL_CONVERT_NO_ARGUMENT = -2  # an argument is missing or no block, or a stream cannot be made
UTIL_CONVERT_FAILED = -4  # a stream or memory fails, or there are too many bytes
UTIL_CONVERT_TOO_SMALL = -44  # the text does not fit into the destination


# A pool: an opaque value of 32 bits, 0 for none
class UtilThreadPool(c_void_p):
    pass


# Why a job is called
UTIL_POOL_RUN = 0  # to do its work
UTIL_POOL_DISCARDED = 1  # it will never run: it frees what "user" leads to


# A job
UtilThreadPoolJob = WINFUNCTYPE(None, c_uint, c_uint, POINTER(c_int))  # (reason, user, abort)


# Flag of UtilThreadPoolOpen
UTIL_POOL_BACKGROUND = 0x1  # jobs run one step below normal priority


# For the time of UtilThreadPoolFinalize
UTIL_POOL_FOREVER = 0xFFFFFFFF


# A help file of the program: an opaque value of 32 bits, 0 for none
class UtilHelp(c_void_p):
    pass


# A subclass of a window: a procedure that sees the window's messages before the window does
class UtilSubclass(c_void_p):
    pass


# Called on the window's thread for each message
UtilWindowProc = WINFUNCTYPE(c_int, UtilSubclass, c_void_p, c_uint, c_uint, c_int, c_uint)  # (subclass, window, message, w, l, user)


# A hook
class UtilHook(c_void_p):
    pass


# Called for what happens to the windows of the hook's thread
UtilCBTProc = WINFUNCTYPE(c_int, UtilHook, c_int, c_uint, c_int, c_uint)  # (hook, code, w, l, user)


# Called when the user has pressed Ctrl+Break: once a press, however long the keys are held
UtilBreakProc = WINFUNCTYPE(c_int, UtilHook, c_uint)  # (hook, user)


# What UtilHandleListMgr does
UTIL_HANDLES_ADD = 1  # notes a handle that the caller has made
UTIL_HANDLES_REMOVE = 2  # takes out a handle that the caller frees
UTIL_HANDLES_COUNT = 3  # counts entries
UTIL_HANDLES_CHECK = 4  # looks for handles that have been freed and not taken out
UTIL_HANDLES_MARK = 5  # gives the present moment a number
UTIL_HANDLES_REPORT = 6  # reports entries in diagnostic lines


# Kinds of handles
UTIL_HANDLE_GDI = 1  # pens, brushes, fonts, bitmaps, regions, palettes, DCs, metafiles
UTIL_HANDLE_ICON = 2  # icons and cursors
UTIL_HANDLE_MENU = 3  # menus
UTIL_HANDLE_WINDOW = 4  # windows
UTIL_HANDLE_KERNEL = 5  # all that CloseHandle closes


# An archive that is being made
class UtilZip(c_void_p):
    pass


# Flags of an entry
UTIL_ZIP_IS_FOLDER = 0x1
UTIL_ZIP_IS_ENCRYPTED = 0x2
UTIL_ZIP_IS_LINK = 0x4  # a symbolic link of another system, which is never made
UTIL_ZIP_IS_RENAMED = 0x8  # the target differs from the name: Windows could not have it
UTIL_ZIP_IS_QUESTION = 0x10  # asks whether the entry is wanted; without it this is progress


# An entry as a callback is shown it
class UtilZipEntry(Structure):
    _fields_ = [
        ("size", c_uint),  # of the structure; later versions may have more
        ("flags", c_uint),  # UTIL_ZIP_IS_...
        ("name", c_wchar_p),  # in the archive, "/" between components; a folder's ends with "/"
        ("target", c_wchar_p),  # unpacking into a folder: the full path that will be written; else null
        ("bytes", c_ulonglong),  # unpacked; of a stream that is added 0 until all of it is
        ("packed", c_ulonglong),  # in the archive; while it is added, what has been written of it so far
        ("done", c_ulonglong),  # bytes of this entry that are handled
        ("modified", FILETIME),  # UTC; 0 when it is not known
        ("index", c_uint),  # of the entry, from 0, as the archive lists them
        ("count", c_uint),  # of entries in the archive; 0 while entries are added
    ]


# Answers of a callback
UTIL_ZIP_GO = 0
UTIL_ZIP_SKIP = 1  # not this one: to a question only, else it counts as UTIL_ZIP_GO


# Called on the thread of the call that it belongs to, with no lock held
UtilZipCallback = WINFUNCTYPE(c_int, POINTER(UtilZipEntry), c_uint)  # (entry, user)


# Flags of options
UTIL_ZIP_STORE = 0x1  # UtilZIPCreate: nothing is compressed
UTIL_ZIP_KEEP_EXISTING = 0x10  # UtilExtractZip: a file that is there stays, its entry is skipped


# 32 bytes
class UtilZipOptions(Structure):
    _fields_ = [
        ("size", c_uint),  # of the structure: 32, or more when a later one is given
        ("flags", c_uint),  # UTIL_ZIP_..., of the call that they are given to
        ("password", c_wchar_p),  # null or empty: none
        ("callback", UtilZipCallback),  # null: all entries are wanted
        ("user", c_uint),  # handed to the callback
        ("reserved", c_uint),  # 0
        ("limit", c_ulonglong),  # UtilExtractZip: bytes that may be unpacked in all; 0: 4 GiB
    ]


# The mapping of the shared info
LOGPAN_SHARED_INFO_LOCAL = 'Local\\LOGPANSharedData'
LOGPAN_SHARED_INFO_GLOBAL = 'Global\\LOGPANSharedData'


# Published by the viewer, read by senders before every line
class LogpanSharedInfo(Structure):
    _fields_ = [
        ("size", c_uint),  # bytes of the structure: 24, or more when a viewer adds fields of its own
        ("port", c_uint),  # UDP port on the loopback address (IPv4), host byte order; 0: none
        ("mask", c_ulonglong),  # not 0: the viewer wants lines
        ("largestDatagram", c_uint),  # bytes of the largest datagram that it takes, header included; less than 512 counts as 512, more than 65507 as 65507
        ("window", c_uint),  # the viewer's window, or 0
    ]
LOGPAN_TAG_LENGTH = 32


# The first bytes of every datagram
class LogpanPacketHeader(Structure):
    _fields_ = [
        ("headerSize", c_uint),  # 112
        ("time", SYSTEMTIME),  # local time of the line
        ("tag", c_wchar * 32),  # the module's tag, terminated; empty: none
        ("thread", c_uint),  # the writing thread's id
        ("processor", c_uint),  # the processor it ran on
        ("sequence", c_uint),  # '0' to '9': the last digit of the process's line counter
        ("reserved", c_uint),  # 0
        ("kind", c_uint),  # 1: a line
        ("subKind", c_uint),  # 0
        ("textBytes", c_uint),  # bytes of UTF-16 text after the header, not terminated. A line's first text begins with its indentation, a blank a level.
    ]


# The older transport
LOGPAN_MAILSLOT = '\\\\.\\mailslot\\logpan'
LOGPAN_GLOBAL_DATA = 'LOGPANGlobalData'  # a mapping of 4 bytes: the viewer's window
LOGPAN_WINDOW_CLASS = 'QmzClsLOGPAN16'  # its class


FUNCTIONS = (
    # Opens a profile from a file, which is closed again before the call returns
    ("ProfJobOpenA", ProfJob, ("fileName", c_char_p)),
    ("ProfJobOpenW", ProfJob, ("fileName", c_wchar_p)),
    # Opens a profile from a file and holds the file open for reading and writing until the job ends
    ("ProfJobOpenExclusiveA", ProfJob, ("fileName", c_char_p)),
    ("ProfJobOpenExclusiveW", ProfJob, ("fileName", c_wchar_p)),
    # Opens a profile from a stream, which is read from its start to its end
    ("ProfJobOpenStream", ProfJob, ("stream", c_void_p)),
    # As ProfJobOpenStream, with a name and flags
    ("ProfJobOpenStreamObjectA", ProfJob, ("stream", c_void_p), ("name", c_char_p), ("flags", c_uint)),
    ("ProfJobOpenStreamObjectW", ProfJob, ("stream", c_void_p), ("name", c_wchar_p), ("flags", c_uint)),
    # Adds one reference to a job
    ("ProfJobAddRef", None, ("job", ProfJob)),
    # Releases one reference to a job
    ("ProfJobClose", None, ("job", ProfJob)),
    # Returns the error of opening and loading the job: PROF_OK or one of the codes of ProfJobOpen
    ("ProfGetError", c_int, ("job", ProfJob)),
    # Saves a profile to a file
    ("ProfSaveA", c_int, ("job", ProfJob), ("fileName", c_char_p), ("flags", c_uint)),
    ("ProfSaveW", c_int, ("job", ProfJob), ("fileName", c_wchar_p), ("flags", c_uint)),
    # Saves a profile into a stream, from its start, and cuts the stream where the profile ends
    ("ProfSaveToStream", c_int, ("job", ProfJob), ("stream", c_void_p), ("flags", c_uint)),
    # Puts a profile on the clipboard, under a private format
    ("ProfSaveToClipboard", c_int, ("job", ProfJob), ("owner", c_void_p), ("flags", c_uint)),
    # Opens a profile from the clipboard
    ("ProfJobOpenClipboard", ProfJob, ("owner", c_void_p)),
    # Tells whether the clipboard holds a profile: nonzero, or 0
    ("ProfIsClipboardDataAvailable", c_int),
    # Finds a list by path: at each segment the first list of that name, with no second try
    ("ProfGetListA", ProfList, ("job", ProfJob), ("list", ProfList), ("path", c_char_p)),
    ("ProfGetListW", ProfList, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p)),
    # Makes an empty list at a path: at each segment the first list of that name is taken, or appended when missing
    ("ProfCreateListA", ProfList, ("job", ProfJob), ("list", ProfList), ("path", c_char_p)),
    ("ProfCreateListW", ProfList, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p)),
    # Appends a new list for every segment of the path, whether or not one of that name exists: "A/B" makes a new A that holds a new B
    ("ProfAppendListA", ProfList, ("job", ProfJob), ("list", ProfList), ("path", c_char_p)),
    ("ProfAppendListW", ProfList, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p)),
    # Deletes lists, with all that is in them
    ("ProfDeleteListA", None, ("job", ProfJob), ("list", ProfList), ("path", c_char_p)),
    ("ProfDeleteListW", None, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p)),
    # Deletes every entry of a list
    ("ProfEmptyList", None, ("job", ProfJob), ("list", ProfList)),
    # Appends copies of all entries of a source list, with all that is in them, to a destination list
    ("ProfCopyList", c_int, ("destinationJob", ProfJob), ("destinationList", ProfList), ("sourceJob", ProfJob), ("sourceList", ProfList)),
    # Walks the entries of one list in order, without entering the lists it holds
    ("ProfEnumA", c_int, ("job", ProfJob), ("list", ProfList), ("callback", ProfEnumCallbackA), ("user", c_uint)),
    ("ProfEnumW", c_int, ("job", ProfJob), ("list", ProfList), ("callback", ProfEnumCallbackW), ("user", c_uint)),
    # Writes a list and all that is in it to the diagnostic output, a line an entry, indented by one blank a level and ended by "\n"
    ("ProfDebugList", c_int, ("job", ProfJob), ("list", ProfList)),
    # Deletes every item that the path reaches, through every list of each segment's name
    ("ProfDeleteItemA", None, ("job", ProfJob), ("list", ProfList), ("path", c_char_p)),
    ("ProfDeleteItemW", None, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p)),
    # Append adds an item at the end of its list, whatever is there
    ("ProfAppendStringA", None, ("job", ProfJob), ("list", ProfList), ("path", c_char_p), ("value", c_char_p)),
    ("ProfAppendStringW", None, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("value", c_wchar_p)),
    ("ProfSetStringA", None, ("job", ProfJob), ("list", ProfList), ("path", c_char_p), ("value", c_char_p)),
    ("ProfSetStringW", None, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("value", c_wchar_p)),
    ("ProfAppendBoolA", None, ("job", ProfJob), ("list", ProfList), ("path", c_char_p), ("value", c_int)),
    ("ProfAppendBoolW", None, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("value", c_int)),
    ("ProfSetBoolA", None, ("job", ProfJob), ("list", ProfList), ("path", c_char_p), ("value", c_int)),
    ("ProfSetBoolW", None, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("value", c_int)),
    ("ProfAppendIntA", None, ("job", ProfJob), ("list", ProfList), ("path", c_char_p), ("value", c_int)),
    ("ProfAppendIntW", None, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("value", c_int)),
    ("ProfSetIntA", None, ("job", ProfJob), ("list", ProfList), ("path", c_char_p), ("value", c_int)),
    ("ProfSetIntW", None, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("value", c_int)),
    ("ProfAppendIntHexA", None, ("job", ProfJob), ("list", ProfList), ("path", c_char_p), ("value", c_uint)),
    ("ProfAppendIntHexW", None, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("value", c_uint)),
    ("ProfSetIntHexA", None, ("job", ProfJob), ("list", ProfList), ("path", c_char_p), ("value", c_uint)),
    ("ProfSetIntHexW", None, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("value", c_uint)),
    ("ProfAppendInt64A", None, ("job", ProfJob), ("list", ProfList), ("path", c_char_p), ("value", c_longlong)),
    ("ProfAppendInt64W", None, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("value", c_longlong)),
    ("ProfSetInt64A", None, ("job", ProfJob), ("list", ProfList), ("path", c_char_p), ("value", c_longlong)),
    ("ProfSetInt64W", None, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("value", c_longlong)),
    ("ProfAppendInt64HexA", None, ("job", ProfJob), ("list", ProfList), ("path", c_char_p), ("value", c_longlong)),
    ("ProfAppendInt64HexW", None, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("value", c_longlong)),
    ("ProfSetInt64HexA", None, ("job", ProfJob), ("list", ProfList), ("path", c_char_p), ("value", c_longlong)),
    ("ProfSetInt64HexW", None, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("value", c_longlong)),
    ("ProfAppendDoubleA", None, ("job", ProfJob), ("list", ProfList), ("path", c_char_p), ("value", c_double)),
    ("ProfAppendDoubleW", None, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("value", c_double)),
    ("ProfSetDoubleA", None, ("job", ProfJob), ("list", ProfList), ("path", c_char_p), ("value", c_double)),
    ("ProfSetDoubleW", None, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("value", c_double)),
    ("ProfAppendPointA", None, ("job", ProfJob), ("list", ProfList), ("path", c_char_p), ("value", POINTER(POINT))),
    ("ProfAppendPointW", None, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("value", POINTER(POINT))),
    ("ProfSetPointA", None, ("job", ProfJob), ("list", ProfList), ("path", c_char_p), ("value", POINTER(POINT))),
    ("ProfSetPointW", None, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("value", POINTER(POINT))),
    ("ProfAppendRectA", None, ("job", ProfJob), ("list", ProfList), ("path", c_char_p), ("value", POINTER(RECT))),
    ("ProfAppendRectW", None, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("value", POINTER(RECT))),
    ("ProfSetRectA", None, ("job", ProfJob), ("list", ProfList), ("path", c_char_p), ("value", POINTER(RECT))),
    ("ProfSetRectW", None, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("value", POINTER(RECT))),
    ("ProfAppendRectLTWHA", None, ("job", ProfJob), ("list", ProfList), ("path", c_char_p), ("value", POINTER(RECT))),
    ("ProfAppendRectLTWHW", None, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("value", POINTER(RECT))),
    ("ProfSetRectLTWHA", None, ("job", ProfJob), ("list", ProfList), ("path", c_char_p), ("value", POINTER(RECT))),
    ("ProfSetRectLTWHW", None, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("value", POINTER(RECT))),
    ("ProfAppendColorrefA", None, ("job", ProfJob), ("list", ProfList), ("path", c_char_p), ("value", c_uint)),
    ("ProfAppendColorrefW", None, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("value", c_uint)),
    ("ProfSetColorrefA", None, ("job", ProfJob), ("list", ProfList), ("path", c_char_p), ("value", c_uint)),
    ("ProfSetColorrefW", None, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("value", c_uint)),
    # Reads an item's text
    ("ProfGetStringA", c_int, ("job", ProfJob), ("list", ProfList), ("path", c_char_p), ("buffer", POINTER(c_char)), ("size", c_uint), ("defaultValue", c_char_p)),
    ("ProfGetStringW", c_int, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("buffer", POINTER(c_wchar)), ("size", c_uint), ("defaultValue", c_wchar_p)),
    # Returns the length of an item's text in UTF-16 characters without a terminator, or PROF_NOT_FOUND
    ("ProfGetStringLengthA", c_int, ("job", ProfJob), ("list", ProfList), ("path", c_char_p)),
    ("ProfGetStringLengthW", c_int, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p)),
    # Typed Get: reads an item's text and parses it
    ("ProfGetBoolA", c_int, ("job", ProfJob), ("list", ProfList), ("path", c_char_p), ("out", POINTER(c_int)), ("defaultValue", c_int)),
    ("ProfGetBoolW", c_int, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("out", POINTER(c_int)), ("defaultValue", c_int)),
    ("ProfGetIntA", c_int, ("job", ProfJob), ("list", ProfList), ("path", c_char_p), ("out", POINTER(c_int)), ("defaultValue", c_int)),
    ("ProfGetIntW", c_int, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("out", POINTER(c_int)), ("defaultValue", c_int)),
    ("ProfGetInt64A", c_int, ("job", ProfJob), ("list", ProfList), ("path", c_char_p), ("out", POINTER(c_longlong)), ("defaultValue", c_longlong)),
    ("ProfGetInt64W", c_int, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("out", POINTER(c_longlong)), ("defaultValue", c_longlong)),
    ("ProfGetDoubleA", c_int, ("job", ProfJob), ("list", ProfList), ("path", c_char_p), ("out", POINTER(c_double)), ("defaultValue", c_double)),
    ("ProfGetDoubleW", c_int, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("out", POINTER(c_double)), ("defaultValue", c_double)),
    ("ProfGetPointA", c_int, ("job", ProfJob), ("list", ProfList), ("path", c_char_p), ("out", POINTER(POINT)), ("defaultValue", POINTER(POINT))),
    ("ProfGetPointW", c_int, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("out", POINTER(POINT)), ("defaultValue", POINTER(POINT))),
    ("ProfGetRectA", c_int, ("job", ProfJob), ("list", ProfList), ("path", c_char_p), ("out", POINTER(RECT)), ("defaultValue", POINTER(RECT))),
    ("ProfGetRectW", c_int, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("out", POINTER(RECT)), ("defaultValue", POINTER(RECT))),
    ("ProfGetRectLTWHA", c_int, ("job", ProfJob), ("list", ProfList), ("path", c_char_p), ("out", POINTER(RECT)), ("defaultValue", POINTER(RECT))),
    ("ProfGetRectLTWHW", c_int, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("out", POINTER(RECT)), ("defaultValue", POINTER(RECT))),
    ("ProfGetColorrefA", c_int, ("job", ProfJob), ("list", ProfList), ("path", c_char_p), ("out", POINTER(c_uint)), ("defaultValue", c_uint)),
    ("ProfGetColorrefW", c_int, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("out", POINTER(c_uint)), ("defaultValue", c_uint)),
    # Append or set an item that holds a variant, placed as by ProfAppendString and ProfSetString
    ("ProfAppendVariant", None, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("value", POINTER(VARIANT))),
    ("ProfSetVariant", None, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("value", POINTER(VARIANT))),
    # Reads a variant from an item
    ("ProfGetVariant", c_int, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("out", POINTER(VARIANT))),
    # As ProfGetVariant, from a text that the caller holds, such as the value that a callback of ProfEnumW is given
    ("ProfGetVariantFromContents", c_int, ("text", c_wchar_p), ("out", POINTER(VARIANT))),
    # Append an item with the bytes of a stream or a file, whatever is there under that name
    ("ProfAppendStreamA", None, ("job", ProfJob), ("list", ProfList), ("path", c_char_p), ("key", c_char_p), ("stream", c_void_p)),
    ("ProfAppendStreamW", None, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("key", c_wchar_p), ("stream", c_void_p)),
    ("ProfAppendFileA", None, ("job", ProfJob), ("list", ProfList), ("path", c_char_p), ("key", c_char_p), ("fileName", c_char_p)),
    ("ProfAppendFileW", None, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("key", c_wchar_p), ("fileName", c_wchar_p)),
    # Write the bytes of an item, the first one of that name, to a stream or a file
    ("ProfGetStreamA", c_int, ("job", ProfJob), ("list", ProfList), ("path", c_char_p), ("key", c_char_p), ("stream", c_void_p)),
    ("ProfGetStreamW", c_int, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("key", c_wchar_p), ("stream", c_void_p)),
    ("ProfGetFileA", c_int, ("job", ProfJob), ("list", ProfList), ("path", c_char_p), ("key", c_char_p), ("fileName", c_char_p)),
    ("ProfGetFileW", c_int, ("job", ProfJob), ("list", ProfList), ("path", c_wchar_p), ("key", c_wchar_p), ("fileName", c_wchar_p)),
    # Appends files to a list: for each a list "File.Entry" with the items "Name", the file's name without its folder, and "Contents", its bytes
    ("ProfAppendFilesA", c_int, ("job", ProfJob), ("list", ProfList), ("files", c_char_p), ("key", c_char_p)),
    ("ProfAppendFilesW", c_int, ("job", ProfJob), ("list", ProfList), ("files", c_wchar_p), ("key", c_wchar_p)),
    # Writes every "File.Entry" of a list, in order, into a folder
    ("ProfExtractFilesA", c_int, ("job", ProfJob), ("list", ProfList), ("folder", c_char_p), ("key", c_char_p)),
    ("ProfExtractFilesW", c_int, ("job", ProfJob), ("list", ProfList), ("folder", c_wchar_p), ("key", c_wchar_p)),
    # Parse a text that the caller holds
    ("ProfLPSTRtoBOOLA", None, ("text", c_char_p), ("out", POINTER(c_int)), ("defaultValue", c_int)),
    ("ProfLPSTRtoBOOLW", None, ("text", c_wchar_p), ("out", POINTER(c_int)), ("defaultValue", c_int)),
    ("ProfLPSTRtoINTA", None, ("text", c_char_p), ("out", POINTER(c_int)), ("defaultValue", c_int)),
    ("ProfLPSTRtoINTW", None, ("text", c_wchar_p), ("out", POINTER(c_int)), ("defaultValue", c_int)),
    ("ProfLPSTRtoINT64A", None, ("text", c_char_p), ("out", POINTER(c_longlong)), ("defaultValue", c_longlong)),
    ("ProfLPSTRtoINT64W", None, ("text", c_wchar_p), ("out", POINTER(c_longlong)), ("defaultValue", c_longlong)),
    ("ProfLPSTRtoRECTA", None, ("text", c_char_p), ("out", POINTER(RECT)), ("defaultValue", POINTER(RECT))),
    ("ProfLPSTRtoRECTW", None, ("text", c_wchar_p), ("out", POINTER(RECT)), ("defaultValue", POINTER(RECT))),
    ("ProfLPSTRtoCOLORREFA", None, ("text", c_char_p), ("out", POINTER(c_uint)), ("defaultValue", c_uint)),
    ("ProfLPSTRtoCOLORREFW", None, ("text", c_wchar_p), ("out", POINTER(c_uint)), ("defaultValue", c_uint)),
    # Returns the version: selector 0 gives 5642 (major * 256 + minor), 1 the major number 22, 2 the minor number 10, any other selector -1
    ("ProfGetVersion", c_int, ("selector", c_int)),
    # Sets an option of the process (low 16 bits of the value)
    ("ProfSetOption", None, ("option", c_uint), ("value", c_uint)),
    # Reads an option of the process
    ("ProfGetOption", c_uint, ("option", c_uint)),
    # Does nothing: kept for callers of earlier versions
    ("ProfSetDebug", None, ("flag", c_int)),
    # Starts protection, or counts a further start: the options of the first hold until the last End
    ("UtilExHandlerStartProtection", c_int, ("options", POINTER(UtilProtection))),
    # Takes back one UtilExHandlerStartProtection
    ("UtilExHandlerEndProtection", c_int),
    # Sets a note that each later report and dump shows, protection or not
    ("UtilExHandlerSetNote", c_int, ("name", c_wchar_p), ("value", c_wchar_p)),
    # Tells where a thread is, as a text of one frame a line, the innermost first, at most 64
    ("UtilDebugHelpGetStackTrace", c_int, ("thread", c_uint), ("context", c_void_p), ("skip", c_uint), ("result", POINTER(BSTR))),
    # Writes the caller's frames to the diagnostic output, as lines of a group below a title
    ("UtilStackTrace", c_int, ("title", c_wchar_p), ("skip", c_uint), ("frames", c_uint)),
    # Writes a dump of a process that goes on, for debuggers: its threads with their stacks, its modules, and the notes of this process
    ("UtilDebugHelpWriteMiniDump", c_int, ("file", c_wchar_p), ("flags", c_uint), ("process", c_uint), ("thread", c_uint), ("exception", c_void_p)),
    # Writes one ZIP archive that a customer can send
    ("UtilDebugHelpWriteSupportArchive", c_int, ("archive", c_wchar_p), ("files", POINTER(c_wchar_p)), ("count", c_uint), ("flags", c_uint)),
    # Writes a line with a module's tag and a change of the nesting level
    ("UtilDebugExtV", None, ("moduleTag", c_wchar_p), ("levelChange", c_int), ("format", c_wchar_p), ("arguments", c_void_p)),
    # Writes a text as it stands
    ("PasDebug", None, ("text", c_wchar_p)),
    # Writes "\nKX32UTIL['<host program>']: error in '<where>' (<what>): \n"
    ("UtilError", None, ("where", c_wchar_p), ("what", c_wchar_p)),
    # Returns whether diagnostic output is on: not 0 while a viewer or a log file takes lines
    ("UtilGetFlags", c_uint),
    # Shows the message box "Assertion Failure", and ends the process with exit code -1 when it is answered, in whichever way
    ("UtilAssert", None, ("expression", c_wchar_p), ("file", c_wchar_p), ("line", c_uint)),
    # Look for a viewer now, and end the connection to one
    ("UtilLOGPAN4Attach", c_int),
    ("UtilLOGPAN4Detach", None),
    # Reads the properties of a file, which is closed again before this returns
    ("UtilDocInfoOpen", UtilDocInfo, ("file", c_wchar_p)),
    # Reads the properties of a document in a stream, from its beginning
    ("UtilDocInfoOpenStream", UtilDocInfo, ("stream", c_void_p)),
    # Returns a property
    ("UtilDocInfoGet", c_int, ("info", UtilDocInfo), ("name", c_wchar_p), ("value", POINTER(BSTR))),
    # Gives properties back
    ("UtilDocInfoClose", c_int, ("info", UtilDocInfo)),
    # Fetches a file and puts it in place, in one step, when all of it is there and right
    ("UtilDownloadFile", c_int, ("url", c_wchar_p), ("file", c_wchar_p), ("options", POINTER(UtilDownloadOptions))),
    # Cuts a path into four parts that put together are the path again, to the character
    ("UtilPathSplit", c_int, ("path", c_wchar_p), ("root", POINTER(BSTR)), ("folder", POINTER(BSTR)), ("name", POINTER(BSTR)), ("extension", POINTER(BSTR))),
    # Merges two paths: what "path" means for somebody who stands in the folder "base"
    ("UtilPathMerge", c_int, ("base", c_wchar_p), ("path", c_wchar_p), ("flags", c_uint), ("result", POINTER(BSTR))),
    # Makes a file's name of any text, such as a report's title
    ("UtilPathMakeName", c_int, ("text", c_wchar_p), ("name", POINTER(BSTR))),
    # Expands a path that begins with a token for one of the system's folders
    ("UtilPathExpand", c_int, ("path", c_wchar_p), ("result", POINTER(BSTR))),
    # Collapses a path: the longest of the system's folders that it begins with becomes its token
    ("UtilPathCollapse", c_int, ("path", c_wchar_p), ("result", POINTER(BSTR))),
    # Makes an empty file, or a folder, that was not there before, and registers it
    ("UtilTempFileCreate", c_int, ("folder", c_wchar_p), ("name", c_wchar_p), ("flags", c_uint), ("path", POINTER(BSTR))),
    # Registers a file that is there, or a folder with all that will be in it, to be removed like those made by UtilTempFileCreate
    ("UtilTempFileAdd", c_int, ("path", c_wchar_p)),
    # Releases a registered file or folder, to stay or to be removed now
    ("UtilTempFileRelease", c_int, ("path", c_wchar_p), ("keep", c_int)),
    # Opens the job of a name, or adds a reference to the one that is open
    ("UtilJobOpen", UtilJob, ("name", c_wchar_p), ("flags", c_uint)),
    # Drops a reference to a job
    ("UtilJobClose", c_int, ("job", UtilJob)),
    # Announce that a module of the product has been loaded or is about to be unloaded
    ("UtilModuleOnAttach", None, ("module", c_wchar_p)),
    ("UtilModuleOnDetach", None, ("module", c_wchar_p)),
    # Returns the library's version
    ("UtilGetVersion", c_uint, ("which", c_uint)),
    # Keeps the language of the host program's user interface for the user
    ("UtilLanguageSet", c_int, ("language", c_uint)),
    # Returns the language that was kept
    ("UtilLanguageGet", c_uint),
    # Makes a heap
    ("UtilHeapCreate", UtilHeap, ("job", UtilJob), ("name", c_wchar_p), ("flags", c_uint)),
    # Deletes a heap with all that is in it, and reports what was left
    ("UtilHeapDelete", c_int, ("heap", UtilHeap)),
    # Has the system check the heap, or the block of one object, and checks every object of a DEBUG heap
    ("UtilHeapValidate", c_int, ("heap", UtilHeap), ("payload", c_void_p), ("reserved", c_uint)),
    # Gives memory that the heap does not need back to the system
    ("UtilHeapShrink", c_int, ("heap", UtilHeap), ("reserved", c_uint)),
    # Return the size in bytes of the last block in use that a walk over the heap meets
    ("UtilHeapSize", c_int, ("heap", UtilHeap)),
    ("UtilHeapSizeObjects", c_int, ("heap", UtilHeap)),
    # Allocates an object
    ("UtilHeapObjectAlloc", c_void_p, ("heap", UtilHeap), ("size", c_int), ("flags", c_uint)),
    ("UtilHeapObjectAllocExt", c_void_p, ("heap", UtilHeap), ("size", c_int), ("flags", c_uint), ("tag", c_uint), ("reserved", c_uint)),
    # Frees an object
    ("UtilHeapObjectFree", c_int, ("heap", UtilHeap), ("payload", c_void_p)),
    # Returns the size of an object's payload
    ("UtilHeapObjectSize", c_int, ("heap", UtilHeap), ("payload", c_void_p)),
    # Masks what HTML cannot hold as character references
    ("UtilMaskAllHTMLCharacters", None, ("text", c_wchar_p), ("result", POINTER(BSTR))),
    # Resolves character references
    ("UtilDemaskAllHTMLCharacters", None, ("text", c_wchar_p), ("result", POINTER(BSTR))),
    # Turns plain text into paragraphs, one for each line
    ("UtilConvertText2HTML", None, ("text", c_wchar_p), ("result", POINTER(BSTR)), ("markers", c_int)),
    # Renders HTML as plain text
    ("UtilConvertHtml2PlainText", None, ("html", c_wchar_p), ("result", POINTER(BSTR)), ("markers", c_int)),
    # Returns the GDI character set that shows a text in a font, for the lfCharSet of a LOGFONT
    ("UtilGetLikelyCharsetFromString", c_int, ("text", c_wchar_p)),
    # Convert a record in place from local time to UTC and back, by the system's conversion for the machine's current zone
    ("UtilLocConvertLocalTimeToUTCTime", c_int, ("time", POINTER(SYSTEMTIME))),
    ("UtilLocConvertUTCTimeToLocalTime", c_int, ("time", POINTER(SYSTEMTIME))),
    # Finds when daylight time starts and ends in a year, in UTC, by the rules that the machine's zone has today
    ("UtilLocGetDSTStartAndEndInUTC", c_int, ("year", c_uint), ("start", POINTER(SYSTEMTIME)), ("end", POINTER(SYSTEMTIME))),
    # Writes a moment as text
    ("UtilLocLocaleStringFromSystemTime", c_int, ("time", POINTER(SYSTEMTIME)), ("locale", c_wchar_p), ("flags", c_uint), ("picture", c_wchar_p), ("result", POINTER(BSTR))),
    # Reads a text as a moment
    ("UtilLocSystemTimeFromLocaleString", c_int, ("text", c_wchar_p), ("locale", c_wchar_p), ("flags", c_uint), ("picture", c_wchar_p), ("time", POINTER(SYSTEMTIME))),
    # Write an OLE date as text and read one, as the two calls above do
    ("UtilDateTimeToLocaleString", c_int, ("dateTime", c_double), ("locale", c_wchar_p), ("flags", c_uint), ("picture", c_wchar_p), ("result", POINTER(BSTR))),
    ("UtilDateTimeFromLocaleString", c_int, ("text", c_wchar_p), ("locale", c_wchar_p), ("flags", c_uint), ("picture", c_wchar_p), ("dateTime", POINTER(c_double))),
    # Converts an OLE date, milliseconds included, which the system's own conversion drops
    ("UtilLocDateTimeToSYSTEMTIME", c_int, ("dateTime", c_double), ("time", POINTER(SYSTEMTIME))),
    # Lists all countries with their names in a language, in its alphabetical order
    ("UtilLocGetCountryList", c_int, ("language", c_wchar_p), ("list", POINTER(UtilLocCountry)), ("count", c_uint)),
    # Tells what is known about a country
    ("UtilLocGetCountryInfo", c_int, ("country", c_wchar_p), ("language", c_wchar_p), ("info", POINTER(UtilLocCountry))),
    # Tells what is known about a language
    ("UtilLocGetLanguageInfo", c_int, ("language", c_wchar_p), ("inLanguage", c_wchar_p), ("info", POINTER(UtilLocLanguage))),
    # Logs a user on and lets the calling thread act for him
    ("UtilImpersonateUser", UtilImpersonation, ("account", c_wchar_p), ("password", c_wchar_p), ("flags", c_uint)),
    # Lets the calling thread act by a copy of a token
    ("UtilImpersonateToken", UtilImpersonation, ("token", c_void_p)),
    # Ends the newest impersonation of the calling thread: the thread has the token that it had before, or none
    ("UtilImpersonateEnd", c_int, ("impersonation", UtilImpersonation)),
    # Returns the SID of an account, "S-1-5-21-..."
    ("UtilSidFromAccount", c_int, ("account", c_wchar_p), ("sid", POINTER(BSTR))),
    # Returns the account that a SID belongs to: "DOMAIN\name", or "name" for one without domain
    ("UtilAccountFromSid", c_int, ("sid", c_wchar_p), ("account", POINTER(BSTR))),
    # Tells whether the user that the calling thread acts for belongs to a group with effect: the group is enabled, and not only there to deny
    ("UtilIsMember", c_int, ("group", c_wchar_p)),
    # Tells whether the user that the calling thread acts for has all of some rights to a file or folder, by what the system keeps with it
    ("UtilCheckAccess", c_int, ("path", c_wchar_p), ("rights", c_uint)),
    # Gives an account exactly these rights to a file, or to a folder with all below that inherits from it
    ("UtilGrantAccess", c_int, ("path", c_wchar_p), ("account", c_wchar_p), ("rights", c_uint)),
    # Returns the path by which another computer reaches the same: "X:\a" as "\\server\share\a" where X leads to "\\server\share", whether or not the connection is up
    ("UtilPathToNetwork", c_int, ("path", c_wchar_p), ("network", POINTER(BSTR))),
    # Returns the path of the same on this computer: by the drive that leads to it or nearest above it, else by the folder that this computer shares, where it is this computer's share
    ("UtilPathToLocal", c_int, ("network", c_wchar_p), ("path", POINTER(BSTR))),
    # Copies a text with its terminator
    ("UtilStrcpy", c_wchar_p, ("destination", POINTER(c_wchar)), ("source", c_wchar_p)),
    # Copies at most size - 1 characters and always terminates
    ("UtilStrncpy", c_wchar_p, ("destination", POINTER(c_wchar)), ("source", c_wchar_p), ("size", c_uint)),
    # Appends a text, which may be the destination itself
    ("UtilStrcat", c_wchar_p, ("destination", POINTER(c_wchar)), ("source", c_wchar_p)),
    # Copies bytes
    ("UtilMemcpy", c_void_p, ("destination", c_void_p), ("source", c_void_p), ("bytes", c_uint)),
    # Fills bytes with the low 8 bits of a value
    ("UtilMemset", c_void_p, ("destination", c_void_p), ("value", c_int), ("bytes", c_uint)),
    # Returns the number of characters before the terminator
    ("UtilStrlen", c_uint, ("string", c_wchar_p)),
    # Returns what UtilStrlen does
    ("UtilSafeStrlen", c_uint, ("reserved", c_uint), ("string", c_wchar_p)),
    # Compares by UTF-16 unit
    ("UtilStrcmp", c_int, ("a", c_wchar_p), ("b", c_wchar_p)),
    # Compares at most count characters by UTF-16 unit
    ("UtilStrncmp", c_int, ("a", c_wchar_p), ("b", c_wchar_p), ("count", c_uint)),
    # Compare without regard to case, at most count characters, as _wcsicmp and _wcsnicmp of msvcrt.dll do: in lower case, by that runtime's locale for characters beyond ASCII
    ("UtilStricmp", c_int, ("a", c_wchar_p), ("b", c_wchar_p)),
    ("UtilStrnicmp", c_int, ("a", c_wchar_p), ("b", c_wchar_p), ("count", c_uint)),
    # Finds the first occurrence of a part
    ("UtilStrstr", c_wchar_p, ("string", c_wchar_p), ("part", c_wchar_p)),
    # Find the first or last occurrence of a character
    ("UtilStrchr", c_wchar_p, ("string", c_wchar_p), ("character", c_wchar)),
    ("UtilStrrchr", c_wchar_p, ("string", c_wchar_p), ("character", c_wchar)),
    # Remove blanks at the beginning, at the end, at both
    ("UtilLtrim", None, ("string", POINTER(c_wchar))),
    ("UtilRtrim", None, ("string", POINTER(c_wchar))),
    ("UtilAtrim", None, ("string", POINTER(c_wchar))),
    # Removes characters and puts others in their place
    ("UtilStuff", c_int, ("string", POINTER(c_wchar)), ("position", c_uint), ("count", c_uint), ("insertion", c_wchar_p)),
    # Keeps a part of a string, moved to its front
    ("UtilSubstr", c_int, ("string", POINTER(c_wchar)), ("start", c_int), ("count", c_uint)),
    # Always return 1: kept for callers that ask whether a pointer is readable, writable, a text of a size
    ("UtilIsRPtr", c_int, ("pointer", c_void_p), ("size", c_uint)),
    ("UtilIsWPtr", c_int, ("pointer", c_void_p), ("size", c_uint)),
    ("UtilIsString", c_int, ("pointer", c_wchar_p), ("size", c_uint)),
    # Turn bytes into text
    ("UtilConvertBLOBToString", c_int, ("bytes", c_void_p), ("byteCount", c_uint), ("destination", POINTER(c_wchar)), ("size", c_uint), ("compress", c_int)),
    ("UtilConvertStreamToString", c_int, ("stream", c_void_p), ("destination", POINTER(c_wchar)), ("size", c_uint), ("compress", c_int)),
    ("UtilConvertHGLOBALToString", c_int, ("block", c_void_p), ("destination", POINTER(c_wchar)), ("size", c_uint), ("compress", c_int)),
    # Turns text into bytes
    ("UtilConvertStringToBLOB", c_int, ("text", c_wchar_p), ("destination", c_void_p), ("size", c_uint)),
    # Turns text into bytes, and writes them to a stream where it stands
    ("UtilConvertStringToStream", c_int, ("text", c_wchar_p), ("stream", c_void_p)),
    # Turns text into a movable global memory block of exactly its bytes
    ("UtilConvertStringToHGLOBAL", c_int, ("text", c_wchar_p), ("out", POINTER(c_void_p))),
    # Opens a pool
    ("UtilThreadPoolOpen", UtilThreadPool, ("name", c_wchar_p), ("threads", c_uint), ("flags", c_uint)),
    # Adds a job
    ("UtilThreadPoolAdd", c_int, ("pool", UtilThreadPool), ("job", UtilThreadPoolJob), ("user", c_uint)),
    # Aborts a pool: jobs that wait are discarded, and it takes no more until it is finalised
    ("UtilThreadPoolAbort", c_int, ("pool", UtilThreadPool)),
    # Waits until a pool is idle
    ("UtilThreadPoolFinalize", c_int, ("pool", UtilThreadPool), ("milliseconds", c_uint)),
    # Closes a pool: aborts it, waits without end as Finalize does, and makes the handle invalid
    ("UtilThreadPoolClose", c_int, ("pool", UtilThreadPool)),
    # Names a help file
    ("UtilHelpOpen", UtilHelp, ("owner", c_void_p), ("file", c_wchar_p)),
    # Show a page of a help file: by its name in the file, by its number, by a word of the index
    ("UtilHelpShowTopic", c_int, ("help", UtilHelp), ("topic", c_wchar_p)),
    ("UtilHelpShowContext", c_int, ("help", UtilHelp), ("id", c_uint)),
    ("UtilHelpShowKeyword", c_int, ("help", UtilHelp), ("keyword", c_wchar_p)),
    # Closes a help file
    ("UtilHelpClose", c_int, ("help", UtilHelp)),
    # Subclasses a window of the calling thread
    ("UtilWindowSubclass", UtilSubclass, ("window", c_void_p), ("proc", UtilWindowProc), ("user", c_uint)),
    # Passes a message on to the subclass before this one, and at last to the window's own procedure
    ("UtilWindowCallNext", c_int, ("subclass", UtilSubclass), ("window", c_void_p), ("message", c_uint), ("w", c_uint), ("l", c_int)),
    # Removes a subclass, in any order, at any time, from within procedures, too
    ("UtilWindowUnsubclass", c_int, ("subclass", UtilSubclass)),
    # Hooks the calling thread: the procedure is asked before the system creates, activates, moves, sizes or destroys a window of this thread
    ("UtilHookCBT", UtilHook, ("proc", UtilCBTProc), ("user", c_uint)),
    # Hooks Ctrl+Break
    ("UtilHookCtrlBreak", UtilHook, ("proc", UtilBreakProc), ("user", c_uint)),
    # Tells how often Ctrl+Break was seen since this was last asked
    ("UtilHookBreakSeen", c_int, ("hook", UtilHook)),
    # Closes a hook
    ("UtilHookClose", c_int, ("hook", UtilHook)),
    # Names a window message, for logs
    ("UtilWindowMessageName", c_int, ("message", c_uint), ("window", c_void_p), ("result", POINTER(BSTR))),
    # Keeps the process's list of handles: which are there, who made them, which were freed twice
    ("UtilHandleListMgr", c_int, ("command", c_uint), ("handle", c_void_p), ("kind", c_uint), ("label", c_wchar_p)),
    # Begins an archive
    ("UtilZIPCreate", UtilZip, ("file", c_wchar_p), ("options", POINTER(UtilZipOptions))),
    # Adds a file, or a folder with all below it, hidden files and empty folders too
    ("UtilZIPAppend", c_int, ("zip", UtilZip), ("source", c_wchar_p), ("name", c_wchar_p)),
    # Adds files and folders under their own names
    ("UtilZIPAppendList", c_int, ("zip", UtilZip), ("sources", POINTER(c_wchar_p)), ("count", c_uint), ("folder", c_wchar_p)),
    # Adds what a stream holds, from its beginning, or from where it stands if it cannot seek, to its end
    ("UtilZIPAppendStream", c_int, ("zip", UtilZip), ("stream", c_void_p), ("name", c_wchar_p), ("modified", POINTER(FILETIME))),
    # Ends an archive
    ("UtilZIPClose", c_int, ("zip", UtilZip), ("keep", c_int)),
    # Lists, tests or unpacks an archive
    ("UtilExtractZip", c_int, ("file", c_wchar_p), ("folder", c_wchar_p), ("options", POINTER(UtilZipOptions))),
)


VARIADIC = (
    # Writes a line
    ("UtilDebug", None, ("format", c_wchar_p)),
    # Writes a line with a module's tag and a change of the nesting level
    ("UtilDebugExt", None, ("moduleTag", c_wchar_p), ("levelChange", c_int), ("format", c_wchar_p)),
    # Formats into a buffer and never writes past its end: what does not fit is cut
    ("UtilSafeSprintf", c_int, ("destination", POINTER(c_wchar)), ("size", c_uint), ("format", c_wchar_p)),
)


def load(path="tvUT22.dll"):
    """Loads the DLL. Its calls are the attributes of what is returned; parameters may be given by name. The system's
    reason is ctypes.get_last_error()."""
    calls = SimpleNamespace()
    library, variadic = WinDLL(path, use_last_error=True), CDLL(path, use_last_error=True)
    for name, result, *parameters in FUNCTIONS:
        prototype = WINFUNCTYPE(result, *(type for _, type in parameters), use_last_error=True)
        setattr(calls, name, prototype((name, library), tuple((1, parameter) for parameter, _ in parameters)))
    for name, result, *parameters in VARIADIC:
        call = getattr(variadic, name)
        call.restype, call.argtypes = result, [type for _, type in parameters]
        setattr(calls, name, call)
    return calls
