// Made by scripts/bindings from the headers. docs/other-languages.md tells how to use it.
unit tvut22;

{$IFDEF FPC}{$MODE DELPHI}{$ENDIF}
{$ALIGN 8}

interface

uses
  Windows, ActiveX;

const
  tvut22_dll = 'tvUT22.dll';

type
  PUtilTexts = ^PWideChar;

// ==== The version of these headers, for callers and for resource scripts. The build takes

const
  TVUT22_VERSION_MAJOR = 22;
  TVUT22_VERSION_MINOR = 10;
  TVUT22_VERSION_TEXT = '22.10';
  TVUT22_VERSION = $16000a;

// ==== Prof: the profile store

// One open profile
type
  ProfJobObject = record end;
  ProfJob = ^ProfJobObject;

// One list inside a job's tree
  ProfListObject = record end;
  ProfList = ^ProfListObject;

// Results
const
  PROF_OK = 0; // success
  PROF_OPEN_FAILED = -1; // open: not a valid file name, or the file could not be opened
  PROF_CONVERT_FAILED = -2; // ProfAppendFiles: a file could not be read or kept
  PROF_EXCLUSIVE_FAILED = -3; // open: an exclusive open failed, other than by sharing
  PROF_CLIPBOARD_FAILED = -3; // ProfSaveToClipboard: no clipboard or no temporary file
  PROF_SAVE_FAILED = -4; // save: the profile could not be written
  PROF_DECODE_FAILED = -4; // ProfGetStream, ProfGetFile: not decoded or not written
  PROF_INVALID_JOB = -5; // ProfGetError, ProfDebugList, ProfCopyList: invalid job handle
  PROF_NOT_FOUND = -6; // Get: no such item (typed Get: or its text is empty)
  PROF_LOAD_FAILED = -7; // open: the contents could not be parsed
  PROF_COPY_FAILED = -8; // ProfCopyList: failed or stopped
  PROF_NO_GLOBAL_MEMORY = -8; // ProfSaveToClipboard: no memory that the clipboard would take
  PROF_NOT_PARSED = -9; // Get: the item's text is not of the type asked for
  PROF_LOCKED = -10; // open: locked by others for 10 seconds, or it could not be read

// Save flags, low four bits: the form
  PROF_FORM_TEXT = $0;
  PROF_FORM_XML = $1;
  PROF_FORM_XFDF = $2;

// Save flags, further bits
  PROF_SAVE_COMPRESSED = $40; // always write the compressed wrapper
  PROF_SAVE_COMPRESSED_AS_READ = $80; // ... if the profile was read from a compressed one

// Flags of ProfJobOpenStreamObject
  PROF_READ_FOREIGN_XFDF = $1; // read XFDF as other programs write it
  PROF_READ_PLAIN_INI = $2; // every [section] is a list of the root list
  PROF_READ_FOREIGN_XML = $4; // read the XML form as other XML programs leave it

// Options of ProfSetOption and ProfGetOption
  PROF_OPTION_CODE_PAGE = 1; // code page of the A forms and of 8-bit files; first: GetACP()

// Opens a profile from a file, which is closed again before the call returns
function ProfJobOpenA(fileName: PAnsiChar): ProfJob; stdcall; external tvut22_dll;
function ProfJobOpenW(fileName: PWideChar): ProfJob; stdcall; external tvut22_dll;

// Opens a profile from a file and holds the file open for reading and writing until the job ends
function ProfJobOpenExclusiveA(fileName: PAnsiChar): ProfJob; stdcall; external tvut22_dll;
function ProfJobOpenExclusiveW(fileName: PWideChar): ProfJob; stdcall; external tvut22_dll;

// Opens a profile from a stream, which is read from its start to its end
function ProfJobOpenStream(const stream: IStream): ProfJob; stdcall; external tvut22_dll;

// As ProfJobOpenStream, with a name and flags
function ProfJobOpenStreamObjectA(const stream: IStream; name: PAnsiChar; flags: Cardinal): ProfJob; stdcall; external tvut22_dll;
function ProfJobOpenStreamObjectW(const stream: IStream; name: PWideChar; flags: Cardinal): ProfJob; stdcall; external tvut22_dll;

// Adds one reference to a job
procedure ProfJobAddRef(job: ProfJob); stdcall; external tvut22_dll;

// Releases one reference to a job
procedure ProfJobClose(job: ProfJob); stdcall; external tvut22_dll;

// Returns the error of opening and loading the job: PROF_OK or one of the codes of ProfJobOpen
function ProfGetError(job: ProfJob): Integer; stdcall; external tvut22_dll;

// Saves a profile to a file
function ProfSaveA(job: ProfJob; fileName: PAnsiChar; flags: Cardinal): Integer; stdcall; external tvut22_dll;
function ProfSaveW(job: ProfJob; fileName: PWideChar; flags: Cardinal): Integer; stdcall; external tvut22_dll;

// Saves a profile into a stream, from its start, and cuts the stream where the profile ends
function ProfSaveToStream(job: ProfJob; const stream: IStream; flags: Cardinal): Integer; stdcall; external tvut22_dll;

// Puts a profile on the clipboard, under a private format
function ProfSaveToClipboard(job: ProfJob; owner: HWND; flags: Cardinal): Integer; stdcall; external tvut22_dll;

// Opens a profile from the clipboard
function ProfJobOpenClipboard(owner: HWND): ProfJob; stdcall; external tvut22_dll;

// Tells whether the clipboard holds a profile: nonzero, or 0
function ProfIsClipboardDataAvailable: BOOL; stdcall; external tvut22_dll;

// Finds a list by path: at each segment the first list of that name, with no second try
function ProfGetListA(job: ProfJob; list: ProfList; path: PAnsiChar): ProfList; stdcall; external tvut22_dll;
function ProfGetListW(job: ProfJob; list: ProfList; path: PWideChar): ProfList; stdcall; external tvut22_dll;

// Makes an empty list at a path: at each segment the first list of that name is taken, or appended when missing
function ProfCreateListA(job: ProfJob; list: ProfList; path: PAnsiChar): ProfList; stdcall; external tvut22_dll;
function ProfCreateListW(job: ProfJob; list: ProfList; path: PWideChar): ProfList; stdcall; external tvut22_dll;

// Appends a new list for every segment of the path, whether or not one of that name exists: "A/B" makes a new A that holds a new B
function ProfAppendListA(job: ProfJob; list: ProfList; path: PAnsiChar): ProfList; stdcall; external tvut22_dll;
function ProfAppendListW(job: ProfJob; list: ProfList; path: PWideChar): ProfList; stdcall; external tvut22_dll;

// Deletes lists, with all that is in them
procedure ProfDeleteListA(job: ProfJob; list: ProfList; path: PAnsiChar); stdcall; external tvut22_dll;
procedure ProfDeleteListW(job: ProfJob; list: ProfList; path: PWideChar); stdcall; external tvut22_dll;

// Deletes every entry of a list
procedure ProfEmptyList(job: ProfJob; list: ProfList); stdcall; external tvut22_dll;

// Appends copies of all entries of a source list, with all that is in them, to a destination list
function ProfCopyList(destinationJob: ProfJob; destinationList: ProfList; sourceJob: ProfJob; sourceList: ProfList): Integer; stdcall; external tvut22_dll;

// Called once an entry by ProfEnum
type
  ProfEnumCallbackA = function(job: ProfJob; name: PAnsiChar; value: PAnsiChar; subList: ProfList; user: Cardinal): BOOL; stdcall;
  ProfEnumCallbackW = function(job: ProfJob; name: PWideChar; value: PWideChar; subList: ProfList; user: Cardinal): BOOL; stdcall;

// Walks the entries of one list in order, without entering the lists it holds
function ProfEnumA(job: ProfJob; list: ProfList; callback: ProfEnumCallbackA; user: Cardinal): BOOL; stdcall; external tvut22_dll;
function ProfEnumW(job: ProfJob; list: ProfList; callback: ProfEnumCallbackW; user: Cardinal): BOOL; stdcall; external tvut22_dll;

// Writes a list and all that is in it to the diagnostic output, a line an entry, indented by one blank a level and ended by "\n"
function ProfDebugList(job: ProfJob; list: ProfList): Integer; stdcall; external tvut22_dll;

// Deletes every item that the path reaches, through every list of each segment's name
procedure ProfDeleteItemA(job: ProfJob; list: ProfList; path: PAnsiChar); stdcall; external tvut22_dll;
procedure ProfDeleteItemW(job: ProfJob; list: ProfList; path: PWideChar); stdcall; external tvut22_dll;

// Append adds an item at the end of its list, whatever is there
procedure ProfAppendStringA(job: ProfJob; list: ProfList; path: PAnsiChar; value: PAnsiChar); stdcall; external tvut22_dll;
procedure ProfAppendStringW(job: ProfJob; list: ProfList; path: PWideChar; value: PWideChar); stdcall; external tvut22_dll;
procedure ProfSetStringA(job: ProfJob; list: ProfList; path: PAnsiChar; value: PAnsiChar); stdcall; external tvut22_dll;
procedure ProfSetStringW(job: ProfJob; list: ProfList; path: PWideChar; value: PWideChar); stdcall; external tvut22_dll;
procedure ProfAppendBoolA(job: ProfJob; list: ProfList; path: PAnsiChar; value: BOOL); stdcall; external tvut22_dll;
procedure ProfAppendBoolW(job: ProfJob; list: ProfList; path: PWideChar; value: BOOL); stdcall; external tvut22_dll;
procedure ProfSetBoolA(job: ProfJob; list: ProfList; path: PAnsiChar; value: BOOL); stdcall; external tvut22_dll;
procedure ProfSetBoolW(job: ProfJob; list: ProfList; path: PWideChar; value: BOOL); stdcall; external tvut22_dll;
procedure ProfAppendIntA(job: ProfJob; list: ProfList; path: PAnsiChar; value: Integer); stdcall; external tvut22_dll;
procedure ProfAppendIntW(job: ProfJob; list: ProfList; path: PWideChar; value: Integer); stdcall; external tvut22_dll;
procedure ProfSetIntA(job: ProfJob; list: ProfList; path: PAnsiChar; value: Integer); stdcall; external tvut22_dll;
procedure ProfSetIntW(job: ProfJob; list: ProfList; path: PWideChar; value: Integer); stdcall; external tvut22_dll;
procedure ProfAppendIntHexA(job: ProfJob; list: ProfList; path: PAnsiChar; value: Cardinal); stdcall; external tvut22_dll;
procedure ProfAppendIntHexW(job: ProfJob; list: ProfList; path: PWideChar; value: Cardinal); stdcall; external tvut22_dll;
procedure ProfSetIntHexA(job: ProfJob; list: ProfList; path: PAnsiChar; value: Cardinal); stdcall; external tvut22_dll;
procedure ProfSetIntHexW(job: ProfJob; list: ProfList; path: PWideChar; value: Cardinal); stdcall; external tvut22_dll;
procedure ProfAppendInt64A(job: ProfJob; list: ProfList; path: PAnsiChar; value: Int64); stdcall; external tvut22_dll;
procedure ProfAppendInt64W(job: ProfJob; list: ProfList; path: PWideChar; value: Int64); stdcall; external tvut22_dll;
procedure ProfSetInt64A(job: ProfJob; list: ProfList; path: PAnsiChar; value: Int64); stdcall; external tvut22_dll;
procedure ProfSetInt64W(job: ProfJob; list: ProfList; path: PWideChar; value: Int64); stdcall; external tvut22_dll;
procedure ProfAppendInt64HexA(job: ProfJob; list: ProfList; path: PAnsiChar; value: Int64); stdcall; external tvut22_dll;
procedure ProfAppendInt64HexW(job: ProfJob; list: ProfList; path: PWideChar; value: Int64); stdcall; external tvut22_dll;
procedure ProfSetInt64HexA(job: ProfJob; list: ProfList; path: PAnsiChar; value: Int64); stdcall; external tvut22_dll;
procedure ProfSetInt64HexW(job: ProfJob; list: ProfList; path: PWideChar; value: Int64); stdcall; external tvut22_dll;
procedure ProfAppendDoubleA(job: ProfJob; list: ProfList; path: PAnsiChar; value: Double); stdcall; external tvut22_dll;
procedure ProfAppendDoubleW(job: ProfJob; list: ProfList; path: PWideChar; value: Double); stdcall; external tvut22_dll;
procedure ProfSetDoubleA(job: ProfJob; list: ProfList; path: PAnsiChar; value: Double); stdcall; external tvut22_dll;
procedure ProfSetDoubleW(job: ProfJob; list: ProfList; path: PWideChar; value: Double); stdcall; external tvut22_dll;
procedure ProfAppendPointA(job: ProfJob; list: ProfList; path: PAnsiChar; value: PPoint); stdcall; external tvut22_dll;
procedure ProfAppendPointW(job: ProfJob; list: ProfList; path: PWideChar; value: PPoint); stdcall; external tvut22_dll;
procedure ProfSetPointA(job: ProfJob; list: ProfList; path: PAnsiChar; value: PPoint); stdcall; external tvut22_dll;
procedure ProfSetPointW(job: ProfJob; list: ProfList; path: PWideChar; value: PPoint); stdcall; external tvut22_dll;
procedure ProfAppendRectA(job: ProfJob; list: ProfList; path: PAnsiChar; value: PRect); stdcall; external tvut22_dll;
procedure ProfAppendRectW(job: ProfJob; list: ProfList; path: PWideChar; value: PRect); stdcall; external tvut22_dll;
procedure ProfSetRectA(job: ProfJob; list: ProfList; path: PAnsiChar; value: PRect); stdcall; external tvut22_dll;
procedure ProfSetRectW(job: ProfJob; list: ProfList; path: PWideChar; value: PRect); stdcall; external tvut22_dll;
procedure ProfAppendRectLTWHA(job: ProfJob; list: ProfList; path: PAnsiChar; value: PRect); stdcall; external tvut22_dll;
procedure ProfAppendRectLTWHW(job: ProfJob; list: ProfList; path: PWideChar; value: PRect); stdcall; external tvut22_dll;
procedure ProfSetRectLTWHA(job: ProfJob; list: ProfList; path: PAnsiChar; value: PRect); stdcall; external tvut22_dll;
procedure ProfSetRectLTWHW(job: ProfJob; list: ProfList; path: PWideChar; value: PRect); stdcall; external tvut22_dll;
procedure ProfAppendColorrefA(job: ProfJob; list: ProfList; path: PAnsiChar; value: Cardinal); stdcall; external tvut22_dll;
procedure ProfAppendColorrefW(job: ProfJob; list: ProfList; path: PWideChar; value: Cardinal); stdcall; external tvut22_dll;
procedure ProfSetColorrefA(job: ProfJob; list: ProfList; path: PAnsiChar; value: Cardinal); stdcall; external tvut22_dll;
procedure ProfSetColorrefW(job: ProfJob; list: ProfList; path: PWideChar; value: Cardinal); stdcall; external tvut22_dll;

// Reads an item's text
function ProfGetStringA(job: ProfJob; list: ProfList; path: PAnsiChar; buffer: PAnsiChar; size: Cardinal; defaultValue: PAnsiChar): Integer; stdcall; external tvut22_dll;
function ProfGetStringW(job: ProfJob; list: ProfList; path: PWideChar; buffer: PWideChar; size: Cardinal; defaultValue: PWideChar): Integer; stdcall; external tvut22_dll;

// Returns the length of an item's text in UTF-16 characters without a terminator, or PROF_NOT_FOUND
function ProfGetStringLengthA(job: ProfJob; list: ProfList; path: PAnsiChar): Integer; stdcall; external tvut22_dll;
function ProfGetStringLengthW(job: ProfJob; list: ProfList; path: PWideChar): Integer; stdcall; external tvut22_dll;

// Typed Get: reads an item's text and parses it
function ProfGetBoolA(job: ProfJob; list: ProfList; path: PAnsiChar; out_: PBOOL; defaultValue: BOOL): Integer; stdcall; external tvut22_dll;
function ProfGetBoolW(job: ProfJob; list: ProfList; path: PWideChar; out_: PBOOL; defaultValue: BOOL): Integer; stdcall; external tvut22_dll;
function ProfGetIntA(job: ProfJob; list: ProfList; path: PAnsiChar; out_: PInteger; defaultValue: Integer): Integer; stdcall; external tvut22_dll;
function ProfGetIntW(job: ProfJob; list: ProfList; path: PWideChar; out_: PInteger; defaultValue: Integer): Integer; stdcall; external tvut22_dll;
function ProfGetInt64A(job: ProfJob; list: ProfList; path: PAnsiChar; out_: PInt64; defaultValue: Int64): Integer; stdcall; external tvut22_dll;
function ProfGetInt64W(job: ProfJob; list: ProfList; path: PWideChar; out_: PInt64; defaultValue: Int64): Integer; stdcall; external tvut22_dll;
function ProfGetDoubleA(job: ProfJob; list: ProfList; path: PAnsiChar; out_: PDouble; defaultValue: Double): Integer; stdcall; external tvut22_dll;
function ProfGetDoubleW(job: ProfJob; list: ProfList; path: PWideChar; out_: PDouble; defaultValue: Double): Integer; stdcall; external tvut22_dll;
function ProfGetPointA(job: ProfJob; list: ProfList; path: PAnsiChar; out_: PPoint; defaultValue: PPoint): Integer; stdcall; external tvut22_dll;
function ProfGetPointW(job: ProfJob; list: ProfList; path: PWideChar; out_: PPoint; defaultValue: PPoint): Integer; stdcall; external tvut22_dll;
function ProfGetRectA(job: ProfJob; list: ProfList; path: PAnsiChar; out_: PRect; defaultValue: PRect): Integer; stdcall; external tvut22_dll;
function ProfGetRectW(job: ProfJob; list: ProfList; path: PWideChar; out_: PRect; defaultValue: PRect): Integer; stdcall; external tvut22_dll;
function ProfGetRectLTWHA(job: ProfJob; list: ProfList; path: PAnsiChar; out_: PRect; defaultValue: PRect): Integer; stdcall; external tvut22_dll;
function ProfGetRectLTWHW(job: ProfJob; list: ProfList; path: PWideChar; out_: PRect; defaultValue: PRect): Integer; stdcall; external tvut22_dll;
function ProfGetColorrefA(job: ProfJob; list: ProfList; path: PAnsiChar; out_: PCardinal; defaultValue: Cardinal): Integer; stdcall; external tvut22_dll;
function ProfGetColorrefW(job: ProfJob; list: ProfList; path: PWideChar; out_: PCardinal; defaultValue: Cardinal): Integer; stdcall; external tvut22_dll;

// Append or set an item that holds a variant, placed as by ProfAppendString and ProfSetString
procedure ProfAppendVariant(job: ProfJob; list: ProfList; path: PWideChar; value: POleVariant); stdcall; external tvut22_dll;
procedure ProfSetVariant(job: ProfJob; list: ProfList; path: PWideChar; value: POleVariant); stdcall; external tvut22_dll;

// Reads a variant from an item
function ProfGetVariant(job: ProfJob; list: ProfList; path: PWideChar; out_: POleVariant): Integer; stdcall; external tvut22_dll;

// As ProfGetVariant, from a text that the caller holds, such as the value that a callback of ProfEnumW is given
function ProfGetVariantFromContents(text: PWideChar; out_: POleVariant): Integer; stdcall; external tvut22_dll;

// Append an item with the bytes of a stream or a file, whatever is there under that name
procedure ProfAppendStreamA(job: ProfJob; list: ProfList; path: PAnsiChar; key: PAnsiChar; const stream: IStream); stdcall; external tvut22_dll;
procedure ProfAppendStreamW(job: ProfJob; list: ProfList; path: PWideChar; key: PWideChar; const stream: IStream); stdcall; external tvut22_dll;
procedure ProfAppendFileA(job: ProfJob; list: ProfList; path: PAnsiChar; key: PAnsiChar; fileName: PAnsiChar); stdcall; external tvut22_dll;
procedure ProfAppendFileW(job: ProfJob; list: ProfList; path: PWideChar; key: PWideChar; fileName: PWideChar); stdcall; external tvut22_dll;

// Write the bytes of an item, the first one of that name, to a stream or a file
function ProfGetStreamA(job: ProfJob; list: ProfList; path: PAnsiChar; key: PAnsiChar; const stream: IStream): Integer; stdcall; external tvut22_dll;
function ProfGetStreamW(job: ProfJob; list: ProfList; path: PWideChar; key: PWideChar; const stream: IStream): Integer; stdcall; external tvut22_dll;
function ProfGetFileA(job: ProfJob; list: ProfList; path: PAnsiChar; key: PAnsiChar; fileName: PAnsiChar): Integer; stdcall; external tvut22_dll;
function ProfGetFileW(job: ProfJob; list: ProfList; path: PWideChar; key: PWideChar; fileName: PWideChar): Integer; stdcall; external tvut22_dll;

// Appends files to a list: for each a list "File.Entry" with the items "Name", the file's name without its folder, and "Contents", its bytes
function ProfAppendFilesA(job: ProfJob; list: ProfList; files: PAnsiChar; key: PAnsiChar): Integer; stdcall; external tvut22_dll;
function ProfAppendFilesW(job: ProfJob; list: ProfList; files: PWideChar; key: PWideChar): Integer; stdcall; external tvut22_dll;

// Writes every "File.Entry" of a list, in order, into a folder
function ProfExtractFilesA(job: ProfJob; list: ProfList; folder: PAnsiChar; key: PAnsiChar): Integer; stdcall; external tvut22_dll;
function ProfExtractFilesW(job: ProfJob; list: ProfList; folder: PWideChar; key: PWideChar): Integer; stdcall; external tvut22_dll;

// Parse a text that the caller holds
procedure ProfLPSTRtoBOOLA(text: PAnsiChar; out_: PBOOL; defaultValue: BOOL); stdcall; external tvut22_dll;
procedure ProfLPSTRtoBOOLW(text: PWideChar; out_: PBOOL; defaultValue: BOOL); stdcall; external tvut22_dll;
procedure ProfLPSTRtoINTA(text: PAnsiChar; out_: PInteger; defaultValue: Integer); stdcall; external tvut22_dll;
procedure ProfLPSTRtoINTW(text: PWideChar; out_: PInteger; defaultValue: Integer); stdcall; external tvut22_dll;
procedure ProfLPSTRtoINT64A(text: PAnsiChar; out_: PInt64; defaultValue: Int64); stdcall; external tvut22_dll;
procedure ProfLPSTRtoINT64W(text: PWideChar; out_: PInt64; defaultValue: Int64); stdcall; external tvut22_dll;
procedure ProfLPSTRtoRECTA(text: PAnsiChar; out_: PRect; defaultValue: PRect); stdcall; external tvut22_dll;
procedure ProfLPSTRtoRECTW(text: PWideChar; out_: PRect; defaultValue: PRect); stdcall; external tvut22_dll;
procedure ProfLPSTRtoCOLORREFA(text: PAnsiChar; out_: PCardinal; defaultValue: Cardinal); stdcall; external tvut22_dll;
procedure ProfLPSTRtoCOLORREFW(text: PWideChar; out_: PCardinal; defaultValue: Cardinal); stdcall; external tvut22_dll;

// Returns the version: selector 0 gives 5642 (major * 256 + minor), 1 the major number 22, 2 the minor number 10, any other selector -1
function ProfGetVersion(selector: Integer): Integer; stdcall; external tvut22_dll;

// Sets an option of the process (low 16 bits of the value)
procedure ProfSetOption(option: Cardinal; value: Cardinal); stdcall; external tvut22_dll;

// Reads an option of the process
function ProfGetOption(option: Cardinal): Cardinal; stdcall; external tvut22_dll;

// Does nothing: kept for callers of earlier versions
procedure ProfSetDebug(flag: BOOL); stdcall; external tvut22_dll;

// ==== Util: results that calls of several families share. A name means the same in all of them

const
  UTIL_OK = 0; // success
  UTIL_YES = 1; // an answer
  UTIL_NO = 0; // an answer
  UTIL_BAD_ARGUMENT = -2; // null where something is wanted, an unknown flag, no handle of this kind
  UTIL_NO_ACCESS = -3; // denied, or in use by somebody
  UTIL_FAILED = -4; // the system failed, or memory has run out
  UTIL_DAMAGED = -5; // not what it claims to be
  UTIL_NOT_FOUND = -6; // there is no such thing
  UTIL_TOO_LARGE = -7; // beyond a bound
  UTIL_NOT_SUPPORTED = -8; // of a kind that is not known
  UTIL_CANCELLED = -9; // a callback or an abort wanted it
  UTIL_UNSAFE = -10; // it would lead where it must not: out of the folder, from https to http
  UTIL_BAD_PASSWORD = -11; // missing or wrong
  UTIL_EXISTS = -12; // it is there already
  UTIL_JOBS_LEFT = -13; // jobs were discarded
  UTIL_FROM_JOB = -14; // not possible from within a job
  UTIL_IN_LOADER = -15; // not possible while the thread loads or unloads a library
  UTIL_TIMEOUT = -16; // the time is over
  UTIL_WRONG_THREAD = -17; // another thread has to make this call
  UTIL_NOT_PARSED = -18; // the text cannot be read as what it should be
  UTIL_SERVER_REFUSED = -19; // the server said no
  UTIL_MISMATCH = -20; // not what was expected

// ==== Util: what is left of a crash: a report, a dump, the product's own notes; and stack traces at any time

// Called when report and dump of a crash are written, on the prepared thread
type
  UtilCrashHandler = procedure(report: PWideChar; dump: PWideChar; user: Cardinal); stdcall;

// Flags of UtilProtection
const
  UTIL_PROTECT_END = $1; // the process ends when all is written; see below
  UTIL_PROTECT_FULL = $2; // dumps with all memory
  UTIL_PROTECT_NOTICE = $4; // a message box names the report in the end, for 60 seconds at most

// How a process is to be protected
type
  UtilProtection = record
    size: Cardinal; // of this structure, 32 or more; what comes after is ignored
    flags: Cardinal; // UTIL_PROTECT_...
    folder: PWideChar; // where reports go, made when missing; null: "Reports" in a folder of the host program's name in the user's local application data
    product: PWideChar; // shown in reports; null: the host program's name
    version: PWideChar; // shown in reports; null: the host program's file version
    keep: Cardinal; // reports kept in the folder, the newest; 0: 10
    after: UtilCrashHandler; // may be null
    user: Cardinal; // for "after"
  end;
  PUtilProtection = ^UtilProtection;

// Starts protection, or counts a further start: the options of the first hold until the last End
function UtilExHandlerStartProtection(options: PUtilProtection): Integer; stdcall; external tvut22_dll;

// Takes back one UtilExHandlerStartProtection
function UtilExHandlerEndProtection: Integer; stdcall; external tvut22_dll;

// Sets a note that each later report and dump shows, protection or not
function UtilExHandlerSetNote(name: PWideChar; value: PWideChar): Integer; stdcall; external tvut22_dll;

// Tells where a thread is, as a text of one frame a line, the innermost first, at most 64
function UtilDebugHelpGetStackTrace(thread: Cardinal; context: Pointer; skip: Cardinal; result_: PWideString): Integer; stdcall; external tvut22_dll;

// Writes the caller's frames to the diagnostic output, as lines of a group below a title
function UtilStackTrace(title: PWideChar; skip: Cardinal; frames: Cardinal): Integer; stdcall; external tvut22_dll;

// Flag of UtilDebugHelpWriteMiniDump
const
  UTIL_DUMP_FULL = $1; // all memory

// Writes a dump of a process that goes on, for debuggers: its threads with their stacks, its modules, and the notes of this process
function UtilDebugHelpWriteMiniDump(file_: PWideChar; flags: Cardinal; process: Cardinal; thread: Cardinal; exception: Pointer): Integer; stdcall; external tvut22_dll;

// Support archive
const
  UTIL_SUPPORT_TAKE = $1; // reports that are in the finished archive are removed from their folder

// Writes one ZIP archive that a customer can send
function UtilDebugHelpWriteSupportArchive(archive: PWideChar; files: PUtilTexts; count: Cardinal; flags: Cardinal): Integer; stdcall; external tvut22_dll;

// ==== Util: diagnostic output

// Writes a line
procedure UtilDebug(format: PWideChar); cdecl; varargs; external tvut22_dll;

// Writes a line with a module's tag and a change of the nesting level
procedure UtilDebugExt(moduleTag: PWideChar; levelChange: Integer; format: PWideChar); cdecl; varargs; external tvut22_dll;
procedure UtilDebugExtV(moduleTag: PWideChar; levelChange: Integer; format: PWideChar; arguments: Pointer); stdcall; external tvut22_dll;

// Writes a text as it stands
procedure PasDebug(text: PWideChar); stdcall; external tvut22_dll;

// Writes "\nKX32UTIL['<host program>']: error in '<where>' (<what>): \n"
procedure UtilError(where: PWideChar; what: PWideChar); stdcall; external tvut22_dll;

// Returns whether diagnostic output is on: not 0 while a viewer or a log file takes lines
function UtilGetFlags: Cardinal; stdcall; external tvut22_dll;

// Shows the message box "Assertion Failure", and ends the process with exit code -1 when it is answered, in whichever way
procedure UtilAssert(expression: PWideChar; file_: PWideChar; line: Cardinal); stdcall; external tvut22_dll;

// Look for a viewer now, and end the connection to one
function UtilLOGPAN4Attach: BOOL; stdcall; external tvut22_dll;
procedure UtilLOGPAN4Detach; stdcall; external tvut22_dll;

// ==== Util: author, title, dates and other properties of documents, without the programs that made them

// The properties of a document: an opaque value of 32 bits, 0 for none
type
  UtilDocInfoObject = record end;
  UtilDocInfo = ^UtilDocInfoObject;

// Reads the properties of a file, which is closed again before this returns
function UtilDocInfoOpen(file_: PWideChar): UtilDocInfo; stdcall; external tvut22_dll;

// Reads the properties of a document in a stream, from its beginning
function UtilDocInfoOpenStream(const stream: IStream): UtilDocInfo; stdcall; external tvut22_dll;

// Returns a property
function UtilDocInfoGet(info: UtilDocInfo; name: PWideChar; value: PWideString): Integer; stdcall; external tvut22_dll;

// Gives properties back
function UtilDocInfoClose(info: UtilDocInfo): Integer; stdcall; external tvut22_dll;

// ==== Util: files from the web, there whole or not at all

// The address and every redirection must be https
const
  UTIL_DOWNLOAD_HTTPS_ONLY = $1;

// Called on the thread that called UtilDownloadFile: once before anything is asked, when bytes have come and at least every 100 ms, also while nothing comes, and once with done = total when the answer is complete and before the file is put in place
type
  UtilDownloadCallback = function(done: UInt64; total: UInt64; user: Cardinal): BOOL; stdcall;
  UtilDownloadOptions = record
    size: Cardinal; // 40, or more in programs of later versions
    flags: Cardinal; // UTIL_DOWNLOAD_...
    sha256: PWideChar; // 64 hexadecimal digits that the contents must have; null or empty: any
    callback: UtilDownloadCallback; // may be null
    user: Cardinal; // handed to the callback
    patience: Cardinal; // milliseconds without a byte or answer that end it; 0: 30,000
    limit: UInt64; // bytes at most; 0: 4 GiB
    status: Cardinal; // set by the call: the HTTP status of the last answer, 0: none came
    reserved: Cardinal; // 0
  end;
  PUtilDownloadOptions = ^UtilDownloadOptions;

// Fetches a file and puts it in place, in one step, when all of it is there and right
function UtilDownloadFile(url: PWideChar; file_: PWideChar; options: PUtilDownloadOptions): Integer; stdcall; external tvut22_dll;

// ==== Util: paths taken apart and put together, the system's folders in stored paths, temporary files

// Cuts a path into four parts that put together are the path again, to the character
function UtilPathSplit(path: PWideChar; root: PWideString; folder: PWideString; name: PWideString; extension: PWideString): Integer; stdcall; external tvut22_dll;

// Flag of UtilPathMerge
const
  UTIL_PATH_INSIDE = $1; // the path is a stranger's: the result must not lie outside the base

// Merges two paths: what "path" means for somebody who stands in the folder "base"
function UtilPathMerge(base: PWideChar; path: PWideChar; flags: Cardinal; result_: PWideString): Integer; stdcall; external tvut22_dll;

// Makes a file's name of any text, such as a report's title
function UtilPathMakeName(text: PWideChar; name: PWideString): Integer; stdcall; external tvut22_dll;

// Expands a path that begins with a token for one of the system's folders
function UtilPathExpand(path: PWideChar; result_: PWideString): Integer; stdcall; external tvut22_dll;

// Collapses a path: the longest of the system's folders that it begins with becomes its token
function UtilPathCollapse(path: PWideChar; result_: PWideString): Integer; stdcall; external tvut22_dll;

// Flag of UtilTempFileCreate
const
  UTIL_TEMP_FOLDER = $1; // a folder

// Makes an empty file, or a folder, that was not there before, and registers it
function UtilTempFileCreate(folder: PWideChar; name: PWideChar; flags: Cardinal; path: PWideString): Integer; stdcall; external tvut22_dll;

// Registers a file that is there, or a folder with all that will be in it, to be removed like those made by UtilTempFileCreate
function UtilTempFileAdd(path: PWideChar): Integer; stdcall; external tvut22_dll;

// Releases a registered file or folder, to stay or to be removed now
function UtilTempFileRelease(path: PWideChar; keep: BOOL): Integer; stdcall; external tvut22_dll;

// ==== Util: modules and their jobs, the library's version, the language

// A job
type
  UtilJobObject = record end;
  UtilJob = ^UtilJobObject;

// Results: UTIL_OK, and
const
  UTIL_BAD_JOB = -2; // not a job's handle
  UTIL_HEAPS_LEFT = -5; // the job still had heaps; they were reported and destroyed

// Flags of UtilJobOpen
  UTIL_JOB_TRACE = $80000000; // every call on the job and its heaps writes diagnostic lines
  UTIL_JOB_DEBUG_HEAPS = $40000000; // heaps of the job check their objects, unless they refuse

// Opens the job of a name, or adds a reference to the one that is open
function UtilJobOpen(name: PWideChar; flags: Cardinal): UtilJob; stdcall; external tvut22_dll;

// Drops a reference to a job
function UtilJobClose(job: UtilJob): Integer; stdcall; external tvut22_dll;

// Announce that a module of the product has been loaded or is about to be unloaded
procedure UtilModuleOnAttach(module: PWideChar); stdcall; external tvut22_dll;
procedure UtilModuleOnDetach(module: PWideChar); stdcall; external tvut22_dll;

// Returns the library's version
function UtilGetVersion(which: Cardinal): Cardinal; stdcall; external tvut22_dll;

// Keeps the language of the host program's user interface for the user
function UtilLanguageSet(language: Cardinal): Integer; stdcall; external tvut22_dll;

// Returns the language that was kept
function UtilLanguageGet: Cardinal; stdcall; external tvut22_dll;

// ==== Util: checked heaps

// A heap
type
  UtilHeapObject = record end;
  UtilHeap = ^UtilHeapObject;

// Results
const
  UTIL_HEAP_FAILED = -2; // shrinking failed; not a heap's handle
  UTIL_HEAP_CORRUPTED = -3; // the system finds the heap damaged, or loses its way in it
  UTIL_HEAP_BAD_OBJECT = -6; // no object of this heap, a damaged one, or not to be freed
  UTIL_HEAP_NOT_SUPPORTED = -7; // the system lacks the service, or the heap is not DEBUG

// Of heaps
  UTIL_HEAP_UNSERIALISED = $10; // the system's heap takes no lock of its own
  UTIL_HEAP_EXCEPTIONS = $20; // an allocation that fails raises the system's exception
  UTIL_HEAP_SILENT_DELETE = $100; // no report of objects left when the heap is deleted

// Of allocations
  UTIL_HEAP_ZERO = $1; // the payload is zeroed
  UTIL_HEAP_FILL = $2; // the payload is filled with 0xF5 when it is not zeroed
  UTIL_HEAP_NO_STACK = $4; // a DEBUG object without a record of the call stack

// Of both
  UTIL_HEAP_NEVER_DEBUG = $40; // not DEBUG, whatever the job, the heap or UTIL_HEAP_DEBUG asks for
  UTIL_HEAP_DEBUG = $40000000; // DEBUG

// Makes a heap
function UtilHeapCreate(job: UtilJob; name: PWideChar; flags: Cardinal): UtilHeap; stdcall; external tvut22_dll;

// Deletes a heap with all that is in it, and reports what was left
function UtilHeapDelete(heap: UtilHeap): Integer; stdcall; external tvut22_dll;

// Has the system check the heap, or the block of one object, and checks every object of a DEBUG heap
function UtilHeapValidate(heap: UtilHeap; payload: Pointer; reserved: Cardinal): Integer; stdcall; external tvut22_dll;

// Gives memory that the heap does not need back to the system
function UtilHeapShrink(heap: UtilHeap; reserved: Cardinal): Integer; stdcall; external tvut22_dll;

// Return the size in bytes of the last block in use that a walk over the heap meets
function UtilHeapSize(heap: UtilHeap): Integer; stdcall; external tvut22_dll;
function UtilHeapSizeObjects(heap: UtilHeap): Integer; stdcall; external tvut22_dll;

// Allocates an object
function UtilHeapObjectAlloc(heap: UtilHeap; size: Integer; flags: Cardinal): Pointer; stdcall; external tvut22_dll;
function UtilHeapObjectAllocExt(heap: UtilHeap; size: Integer; flags: Cardinal; tag: Cardinal; reserved: Cardinal): Pointer; stdcall; external tvut22_dll;

// Frees an object
function UtilHeapObjectFree(heap: UtilHeap; payload: Pointer): Integer; stdcall; external tvut22_dll;

// Returns the size of an object's payload
function UtilHeapObjectSize(heap: UtilHeap; payload: Pointer): Integer; stdcall; external tvut22_dll;

// ==== Util: HTML and plain text

// Masks what HTML cannot hold as character references
procedure UtilMaskAllHTMLCharacters(text: PWideChar; result_: PWideString); stdcall; external tvut22_dll;

// Resolves character references
procedure UtilDemaskAllHTMLCharacters(text: PWideChar; result_: PWideString); stdcall; external tvut22_dll;

// Turns plain text into paragraphs, one for each line
procedure UtilConvertText2HTML(text: PWideChar; result_: PWideString; markers: BOOL); stdcall; external tvut22_dll;

// Renders HTML as plain text
procedure UtilConvertHtml2PlainText(html: PWideChar; result_: PWideString; markers: BOOL); stdcall; external tvut22_dll;

// ==== Util: the character set that a text needs, local time and UTC, dates and times as text, countries and

// Returns the GDI character set that shows a text in a font, for the lfCharSet of a LOGFONT
function UtilGetLikelyCharsetFromString(text: PWideChar): Integer; stdcall; external tvut22_dll;

// Convert a record in place from local time to UTC and back, by the system's conversion for the machine's current zone
function UtilLocConvertLocalTimeToUTCTime(time: PSystemTime): HRESULT; stdcall; external tvut22_dll;
function UtilLocConvertUTCTimeToLocalTime(time: PSystemTime): HRESULT; stdcall; external tvut22_dll;

// Finds when daylight time starts and ends in a year, in UTC, by the rules that the machine's zone has today
function UtilLocGetDSTStartAndEndInUTC(year: Cardinal; start: PSystemTime; end_: PSystemTime): HRESULT; stdcall; external tvut22_dll;

// Rules that hold for the calls of this group and are not repeated there:
const
  UTIL_DATETIME_DATE = 1; // the date only
  UTIL_DATETIME_TIME = 2; // the time only; neither or both: both
  UTIL_DATETIME_LONG = 4; // the locale's long date instead of the short one
  UTIL_DATETIME_NO_SECONDS = 8; // its short time instead of the one with seconds
  UTIL_DATETIME_NO_USER = 16; // the locale's own values, not those that the user has changed
  UTIL_DATETIME_EXACT = 32; // reading takes only what writing gives

// Writes a moment as text
function UtilLocLocaleStringFromSystemTime(time: PSystemTime; locale: PWideChar; flags: Cardinal; picture: PWideChar; result_: PWideString): Integer; stdcall; external tvut22_dll;

// Reads a text as a moment
function UtilLocSystemTimeFromLocaleString(text: PWideChar; locale: PWideChar; flags: Cardinal; picture: PWideChar; time: PSystemTime): Integer; stdcall; external tvut22_dll;

// Write an OLE date as text and read one, as the two calls above do
function UtilDateTimeToLocaleString(dateTime: Double; locale: PWideChar; flags: Cardinal; picture: PWideChar; result_: PWideString): Integer; stdcall; external tvut22_dll;
function UtilDateTimeFromLocaleString(text: PWideChar; locale: PWideChar; flags: Cardinal; picture: PWideChar; dateTime: PDouble): Integer; stdcall; external tvut22_dll;

// Converts an OLE date, milliseconds included, which the system's own conversion drops
function UtilLocDateTimeToSYSTEMTIME(dateTime: Double; time: PSystemTime): Integer; stdcall; external tvut22_dll;

// The 249 countries of ISO 3166-1 and Kosovo, and the 184 languages of ISO 639-1 with traditional Chinese and Serbian in Latin letters
const
  UTIL_COUNTRY_EU = 1; // a member of the European Union
  UTIL_COUNTRY_US_LETTER = 2; // paper is US letter, not A4
  UTIL_COUNTRY_US_MEASURES = 4; // miles, gallons; neither this nor the next: metric
  UTIL_COUNTRY_UK_MEASURES = 8; // metric, but miles and pints

type
  UtilLocCountry = record
    size: Cardinal; // bytes: sizeof(UtilLocCountry)
    code2: array[0..3] of WideChar; // ISO 3166-1: DE
    code3: array[0..3] of WideChar; // DEU; Kosovo has XKK
    number: Cardinal; // 276; Kosovo has 983
    currency: array[0..3] of WideChar; // ISO 4217: EUR. Of several that are legal tender, the newest; empty: none
    flags: Cardinal; // UTIL_COUNTRY_...
    firstDay: Cardinal; // of the week: 0 is Monday, 6 Sunday
    language: array[0..11] of WideChar; // the official one that most speak, by its tag; empty where nobody lives
    name: array[0..95] of WideChar; // in the language that was asked for
    nativeName: array[0..95] of WideChar; // in its own language; English where it has none
  end;
  PUtilLocCountry = ^UtilLocCountry;

const
  UTIL_LANGUAGE_RIGHT_TO_LEFT = 1;

type
  UtilLocLanguage = record
    size: Cardinal; // bytes: sizeof(UtilLocLanguage)
    tag: array[0..15] of WideChar; // de, zh-Hant
    code3: array[0..3] of WideChar; // ISO 639-2/T: deu
    script: array[0..5] of WideChar; // ISO 15924: Latn
    langId: Cardinal; // with the usual sub-language: 0x0407; 0: Windows has none
    codePage: Cardinal; // the ANSI one; 0: Unicode only
    charset: Cardinal; // of this code page, for the lfCharSet of a LOGFONT; without one 1, the default
    flags: Cardinal; // UTIL_LANGUAGE_...
    name: array[0..95] of WideChar; // in the language that was asked for
    nativeName: array[0..95] of WideChar; // in itself
  end;
  PUtilLocLanguage = ^UtilLocLanguage;

// Lists all countries with their names in a language, in its alphabetical order
function UtilLocGetCountryList(language: PWideChar; list: PUtilLocCountry; count: Cardinal): Integer; stdcall; external tvut22_dll;

// Tells what is known about a country
function UtilLocGetCountryInfo(country: PWideChar; language: PWideChar; info: PUtilLocCountry): Integer; stdcall; external tvut22_dll;

// Tells what is known about a language
function UtilLocGetLanguageInfo(language: PWideChar; inLanguage: PWideChar; info: PUtilLocLanguage): Integer; stdcall; external tvut22_dll;

// ==== Util: who the user is, what he may do with a file, acting for another one, and paths on other computers

// A thread's acting for another user: an opaque value of 32 bits, 0 for none
type
  UtilImpersonationObject = record end;
  UtilImpersonation = ^UtilImpersonationObject;

// Flag of UtilImpersonateUser: calls on this computer stay those of the caller, and only connections to others are made as the account, also one of a domain that this computer does not know
const
  UTIL_LOGON_NETWORK = $1;

// Logs a user on and lets the calling thread act for him
function UtilImpersonateUser(account: PWideChar; password: PWideChar; flags: Cardinal): UtilImpersonation; stdcall; external tvut22_dll;

// Lets the calling thread act by a copy of a token
function UtilImpersonateToken(token: THandle): UtilImpersonation; stdcall; external tvut22_dll;

// Ends the newest impersonation of the calling thread: the thread has the token that it had before, or none
function UtilImpersonateEnd(impersonation: UtilImpersonation): Integer; stdcall; external tvut22_dll;

// Returns the SID of an account, "S-1-5-21-..."
function UtilSidFromAccount(account: PWideChar; sid: PWideString): Integer; stdcall; external tvut22_dll;

// Returns the account that a SID belongs to: "DOMAIN\name", or "name" for one without domain
function UtilAccountFromSid(sid: PWideChar; account: PWideString): Integer; stdcall; external tvut22_dll;

// Tells whether the user that the calling thread acts for belongs to a group with effect: the group is enabled, and not only there to deny
function UtilIsMember(group: PWideChar): Integer; stdcall; external tvut22_dll;

// Access rights
const
  UTIL_ACCESS_READ = $1; // contents, attributes, the list of a folder
  UTIL_ACCESS_WRITE = $2; // contents; in folders new files and folders
  UTIL_ACCESS_EXECUTE = $4; // run a program, pass through a folder
  UTIL_ACCESS_DELETE = $8; // remove the file or folder itself
  UTIL_ACCESS_CHANGE_RIGHTS = $10; // the list of rights, and the owner

// Tells whether the user that the calling thread acts for has all of some rights to a file or folder, by what the system keeps with it
function UtilCheckAccess(path: PWideChar; rights: Cardinal): Integer; stdcall; external tvut22_dll;

// Gives an account exactly these rights to a file, or to a folder with all below that inherits from it
function UtilGrantAccess(path: PWideChar; account: PWideChar; rights: Cardinal): Integer; stdcall; external tvut22_dll;

// Returns the path by which another computer reaches the same: "X:\a" as "\\server\share\a" where X leads to "\\server\share", whether or not the connection is up
function UtilPathToNetwork(path: PWideChar; network: PWideString): Integer; stdcall; external tvut22_dll;

// Returns the path of the same on this computer: by the drive that leads to it or nearest above it, else by the folder that this computer shares, where it is this computer's share
function UtilPathToLocal(network: PWideChar; path: PWideString): Integer; stdcall; external tvut22_dll;

// ==== Util: string functions, and text forms of bytes

// Formats into a buffer and never writes past its end: what does not fit is cut
function UtilSafeSprintf(destination: PWideChar; size: Cardinal; format: PWideChar): Integer; cdecl; varargs; external tvut22_dll;

// Copies a text with its terminator
function UtilStrcpy(destination: PWideChar; source: PWideChar): PWideChar; stdcall; external tvut22_dll;

// Copies at most size - 1 characters and always terminates
function UtilStrncpy(destination: PWideChar; source: PWideChar; size: Cardinal): PWideChar; stdcall; external tvut22_dll;

// Appends a text, which may be the destination itself
function UtilStrcat(destination: PWideChar; source: PWideChar): PWideChar; stdcall; external tvut22_dll;

// Copies bytes
function UtilMemcpy(destination: Pointer; source: Pointer; bytes: Cardinal): Pointer; stdcall; external tvut22_dll;

// Fills bytes with the low 8 bits of a value
function UtilMemset(destination: Pointer; value: Integer; bytes: Cardinal): Pointer; stdcall; external tvut22_dll;

// Returns the number of characters before the terminator
function UtilStrlen(string_: PWideChar): Cardinal; stdcall; external tvut22_dll;

// Returns what UtilStrlen does
function UtilSafeStrlen(reserved: Cardinal; string_: PWideChar): Cardinal; stdcall; external tvut22_dll;

// Compares by UTF-16 unit
function UtilStrcmp(a: PWideChar; b: PWideChar): Integer; stdcall; external tvut22_dll;

// Compares at most count characters by UTF-16 unit
function UtilStrncmp(a: PWideChar; b: PWideChar; count: Cardinal): Integer; stdcall; external tvut22_dll;

// Compare without regard to case, at most count characters, as _wcsicmp and _wcsnicmp of msvcrt.dll do: in lower case, by that runtime's locale for characters beyond ASCII
function UtilStricmp(a: PWideChar; b: PWideChar): Integer; stdcall; external tvut22_dll;
function UtilStrnicmp(a: PWideChar; b: PWideChar; count: Cardinal): Integer; stdcall; external tvut22_dll;

// Finds the first occurrence of a part
function UtilStrstr(string_: PWideChar; part: PWideChar): PWideChar; stdcall; external tvut22_dll;

// Find the first or last occurrence of a character
function UtilStrchr(string_: PWideChar; character: WideChar): PWideChar; stdcall; external tvut22_dll;
function UtilStrrchr(string_: PWideChar; character: WideChar): PWideChar; stdcall; external tvut22_dll;

// Remove blanks at the beginning, at the end, at both
procedure UtilLtrim(string_: PWideChar); stdcall; external tvut22_dll;
procedure UtilRtrim(string_: PWideChar); stdcall; external tvut22_dll;
procedure UtilAtrim(string_: PWideChar); stdcall; external tvut22_dll;

// Removes characters and puts others in their place
function UtilStuff(string_: PWideChar; position: Cardinal; count: Cardinal; insertion: PWideChar): Integer; stdcall; external tvut22_dll;

// Keeps a part of a string, moved to its front
function UtilSubstr(string_: PWideChar; start: Integer; count: Cardinal): Integer; stdcall; external tvut22_dll;

// Always return 1: kept for callers that ask whether a pointer is readable, writable, a text of a size
function UtilIsRPtr(pointer_: Pointer; size: Cardinal): BOOL; stdcall; external tvut22_dll;
function UtilIsWPtr(pointer_: Pointer; size: Cardinal): BOOL; stdcall; external tvut22_dll;
function UtilIsString(pointer_: PWideChar; size: Cardinal): BOOL; stdcall; external tvut22_dll;

// The text form of bytes is what items of a profile hold: Base64 without line breaks, or "@2@" and the Base64 of the bytes compressed by zlib
const
  UTIL_CONVERT_TOO_LARGE = -1; // there are more bytes than the destination holds
  UTIL_CONVERT_NO_ARGUMENT = -2; // an argument is missing or no block, or a stream cannot be made
  UTIL_CONVERT_FAILED = -4; // a stream or memory fails, or there are too many bytes
  UTIL_CONVERT_TOO_SMALL = -44; // the text does not fit into the destination

// Turn bytes into text
function UtilConvertBLOBToString(bytes: Pointer; byteCount: Cardinal; destination: PWideChar; size: Cardinal; compress: BOOL): Integer; stdcall; external tvut22_dll;
function UtilConvertStreamToString(const stream: IStream; destination: PWideChar; size: Cardinal; compress: BOOL): Integer; stdcall; external tvut22_dll;
function UtilConvertHGLOBALToString(block: HGLOBAL; destination: PWideChar; size: Cardinal; compress: BOOL): Integer; stdcall; external tvut22_dll;

// Turns text into bytes
function UtilConvertStringToBLOB(text: PWideChar; destination: Pointer; size: Cardinal): Integer; stdcall; external tvut22_dll;

// Turns text into bytes, and writes them to a stream where it stands
function UtilConvertStringToStream(text: PWideChar; const stream: IStream): Integer; stdcall; external tvut22_dll;

// Turns text into a movable global memory block of exactly its bytes
function UtilConvertStringToHGLOBAL(text: PWideChar; out_: PHandle): Integer; stdcall; external tvut22_dll;

// ==== Util: a thread pool, which runs many small jobs of a program on a few threads

// A pool: an opaque value of 32 bits, 0 for none
type
  UtilThreadPoolObject = record end;
  UtilThreadPool = ^UtilThreadPoolObject;

// Why a job is called
const
  UTIL_POOL_RUN = 0; // to do its work
  UTIL_POOL_DISCARDED = 1; // it will never run: it frees what "user" leads to

// A job
type
  UtilThreadPoolJob = procedure(reason: Cardinal; user: Cardinal; abort: PInteger); stdcall;

// Flag of UtilThreadPoolOpen
const
  UTIL_POOL_BACKGROUND = $1; // jobs run one step below normal priority

// Opens a pool
function UtilThreadPoolOpen(name: PWideChar; threads: Cardinal; flags: Cardinal): UtilThreadPool; stdcall; external tvut22_dll;

// Adds a job
function UtilThreadPoolAdd(pool: UtilThreadPool; job: UtilThreadPoolJob; user: Cardinal): Integer; stdcall; external tvut22_dll;

// Aborts a pool: jobs that wait are discarded, and it takes no more until it is finalised
function UtilThreadPoolAbort(pool: UtilThreadPool): Integer; stdcall; external tvut22_dll;

// For the time of UtilThreadPoolFinalize
const
  UTIL_POOL_FOREVER = $FFFFFFFF;

// Waits until a pool is idle
function UtilThreadPoolFinalize(pool: UtilThreadPool; milliseconds: Cardinal): Integer; stdcall; external tvut22_dll;

// Closes a pool: aborts it, waits without end as Finalize does, and makes the handle invalid
function UtilThreadPoolClose(pool: UtilThreadPool): Integer; stdcall; external tvut22_dll;

// ==== Util: what window programs need: help that opens, subclasses that come off cleanly, hooks, names of

// A help file of the program: an opaque value of 32 bits, 0 for none
type
  UtilHelpObject = record end;
  UtilHelp = ^UtilHelpObject;

// Names a help file
function UtilHelpOpen(owner: HWND; file_: PWideChar): UtilHelp; stdcall; external tvut22_dll;

// Show a page of a help file: by its name in the file, by its number, by a word of the index
function UtilHelpShowTopic(help: UtilHelp; topic: PWideChar): Integer; stdcall; external tvut22_dll;
function UtilHelpShowContext(help: UtilHelp; id: Cardinal): Integer; stdcall; external tvut22_dll;
function UtilHelpShowKeyword(help: UtilHelp; keyword: PWideChar): Integer; stdcall; external tvut22_dll;

// Closes a help file
function UtilHelpClose(help: UtilHelp): Integer; stdcall; external tvut22_dll;

// A subclass of a window: a procedure that sees the window's messages before the window does
type
  UtilSubclassObject = record end;
  UtilSubclass = ^UtilSubclassObject;

// Called on the window's thread for each message
  UtilWindowProc = function(subclass: UtilSubclass; window: HWND; message: Cardinal; w: WPARAM; l: LPARAM; user: Cardinal): LRESULT; stdcall;

// Subclasses a window of the calling thread
function UtilWindowSubclass(window: HWND; proc: UtilWindowProc; user: Cardinal): UtilSubclass; stdcall; external tvut22_dll;

// Passes a message on to the subclass before this one, and at last to the window's own procedure
function UtilWindowCallNext(subclass: UtilSubclass; window: HWND; message: Cardinal; w: WPARAM; l: LPARAM): LRESULT; stdcall; external tvut22_dll;

// Removes a subclass, in any order, at any time, from within procedures, too
function UtilWindowUnsubclass(subclass: UtilSubclass): Integer; stdcall; external tvut22_dll;

// A hook
type
  UtilHookObject = record end;
  UtilHook = ^UtilHookObject;

// Called for what happens to the windows of the hook's thread
  UtilCBTProc = function(hook: UtilHook; code: Integer; w: WPARAM; l: LPARAM; user: Cardinal): LRESULT; stdcall;

// Called when the user has pressed Ctrl+Break: once a press, however long the keys are held
  UtilBreakProc = function(hook: UtilHook; user: Cardinal): BOOL; stdcall;

// Hooks the calling thread: the procedure is asked before the system creates, activates, moves, sizes or destroys a window of this thread
function UtilHookCBT(proc: UtilCBTProc; user: Cardinal): UtilHook; stdcall; external tvut22_dll;

// Hooks Ctrl+Break
function UtilHookCtrlBreak(proc: UtilBreakProc; user: Cardinal): UtilHook; stdcall; external tvut22_dll;

// Tells how often Ctrl+Break was seen since this was last asked
function UtilHookBreakSeen(hook: UtilHook): Integer; stdcall; external tvut22_dll;

// Closes a hook
function UtilHookClose(hook: UtilHook): Integer; stdcall; external tvut22_dll;

// Names a window message, for logs
function UtilWindowMessageName(message: Cardinal; window: HWND; result_: PWideString): Integer; stdcall; external tvut22_dll;

// What UtilHandleListMgr does
const
  UTIL_HANDLES_ADD = 1; // notes a handle that the caller has made
  UTIL_HANDLES_REMOVE = 2; // takes out a handle that the caller frees
  UTIL_HANDLES_COUNT = 3; // counts entries
  UTIL_HANDLES_CHECK = 4; // looks for handles that have been freed and not taken out
  UTIL_HANDLES_MARK = 5; // gives the present moment a number
  UTIL_HANDLES_REPORT = 6; // reports entries in diagnostic lines

// Kinds of handles
  UTIL_HANDLE_GDI = 1; // pens, brushes, fonts, bitmaps, regions, palettes, DCs, metafiles
  UTIL_HANDLE_ICON = 2; // icons and cursors
  UTIL_HANDLE_MENU = 3; // menus
  UTIL_HANDLE_WINDOW = 4; // windows
  UTIL_HANDLE_KERNEL = 5; // all that CloseHandle closes

// Keeps the process's list of handles: which are there, who made them, which were freed twice
function UtilHandleListMgr(command: Cardinal; handle: THandle; kind: Cardinal; label_: PWideChar): Integer; stdcall; external tvut22_dll;

// ==== Util: ZIP archives, made so that every program opens them, and taken apart although nobody vouches for

// An archive that is being made
type
  UtilZipObject = record end;
  UtilZip = ^UtilZipObject;

// Flags of an entry
const
  UTIL_ZIP_IS_FOLDER = $1;
  UTIL_ZIP_IS_ENCRYPTED = $2;
  UTIL_ZIP_IS_LINK = $4; // a symbolic link of another system, which is never made
  UTIL_ZIP_IS_RENAMED = $8; // the target differs from the name: Windows could not have it
  UTIL_ZIP_IS_QUESTION = $10; // asks whether the entry is wanted; without it this is progress

// An entry as a callback is shown it
type
  UtilZipEntry = record
    size: Cardinal; // of the structure; later versions may have more
    flags: Cardinal; // UTIL_ZIP_IS_...
    name: PWideChar; // in the archive, "/" between components; a folder's ends with "/"
    target: PWideChar; // unpacking into a folder: the full path that will be written; else null
    bytes: UInt64; // unpacked; of a stream that is added 0 until all of it is
    packed_: UInt64; // in the archive; while it is added, what has been written of it so far
    done: UInt64; // bytes of this entry that are handled
    modified: TFileTime; // UTC; 0 when it is not known
    index: Cardinal; // of the entry, from 0, as the archive lists them
    count: Cardinal; // of entries in the archive; 0 while entries are added
  end;
  PUtilZipEntry = ^UtilZipEntry;

// Answers of a callback
const
  UTIL_ZIP_GO = 0;
  UTIL_ZIP_SKIP = 1; // not this one: to a question only, else it counts as UTIL_ZIP_GO

// Called on the thread of the call that it belongs to, with no lock held
type
  UtilZipCallback = function(entry: PUtilZipEntry; user: Cardinal): Integer; stdcall;

// Flags of options
const
  UTIL_ZIP_STORE = $1; // UtilZIPCreate: nothing is compressed
  UTIL_ZIP_KEEP_EXISTING = $10; // UtilExtractZip: a file that is there stays, its entry is skipped

// 32 bytes
type
  UtilZipOptions = record
    size: Cardinal; // of the structure: 32, or more when a later one is given
    flags: Cardinal; // UTIL_ZIP_..., of the call that they are given to
    password: PWideChar; // null or empty: none
    callback: UtilZipCallback; // null: all entries are wanted
    user: Cardinal; // handed to the callback
    reserved: Cardinal; // 0
    limit: UInt64; // UtilExtractZip: bytes that may be unpacked in all; 0: 4 GiB
  end;
  PUtilZipOptions = ^UtilZipOptions;

// Begins an archive
function UtilZIPCreate(file_: PWideChar; options: PUtilZipOptions): UtilZip; stdcall; external tvut22_dll;

// Adds a file, or a folder with all below it, hidden files and empty folders too
function UtilZIPAppend(zip: UtilZip; source: PWideChar; name: PWideChar): Integer; stdcall; external tvut22_dll;

// Adds files and folders under their own names
function UtilZIPAppendList(zip: UtilZip; sources: PUtilTexts; count: Cardinal; folder: PWideChar): Integer; stdcall; external tvut22_dll;

// Adds what a stream holds, from its beginning, or from where it stands if it cannot seek, to its end
function UtilZIPAppendStream(zip: UtilZip; const stream: IStream; name: PWideChar; modified: PFileTime): Integer; stdcall; external tvut22_dll;

// Ends an archive
function UtilZIPClose(zip: UtilZip; keep: BOOL): Integer; stdcall; external tvut22_dll;

// Lists, tests or unpacks an archive
function UtilExtractZip(file_: PWideChar; folder: PWideChar; options: PUtilZipOptions): Integer; stdcall; external tvut22_dll;

// ==== How diagnostic lines reach a viewer: for those who write one, or a program that sends to one

// The mapping of the shared info
const
  LOGPAN_SHARED_INFO_LOCAL = 'Local\LOGPANSharedData';
  LOGPAN_SHARED_INFO_GLOBAL = 'Global\LOGPANSharedData';

// Published by the viewer, read by senders before every line
type
  LogpanSharedInfo = record
    size: Cardinal; // bytes of the structure: 24, or more when a viewer adds fields of its own
    port: Cardinal; // UDP port on the loopback address (IPv4), host byte order; 0: none
    mask: UInt64; // not 0: the viewer wants lines
    largestDatagram: Cardinal; // bytes of the largest datagram that it takes, header included; less than 512 counts as 512, more than 65507 as 65507
    window: Cardinal; // the viewer's window, or 0
  end;
  PLogpanSharedInfo = ^LogpanSharedInfo;

const
  LOGPAN_TAG_LENGTH = 32;

// The first bytes of every datagram
type
  LogpanPacketHeader = record
    headerSize: Cardinal; // 112
    time: TSystemTime; // local time of the line
    tag: array[0..31] of WideChar; // the module's tag, terminated; empty: none
    thread: Cardinal; // the writing thread's id
    processor: Cardinal; // the processor it ran on
    sequence: Cardinal; // '0' to '9': the last digit of the process's line counter
    reserved: Cardinal; // 0
    kind: Cardinal; // 1: a line
    subKind: Cardinal; // 0
    textBytes: Cardinal; // bytes of UTF-16 text after the header, not terminated. A line's first text begins with its indentation, a blank a level.
  end;
  PLogpanPacketHeader = ^LogpanPacketHeader;

// The older transport
const
  LOGPAN_MAILSLOT = '\\.\mailslot\logpan';
  LOGPAN_GLOBAL_DATA = 'LOGPANGlobalData'; // a mapping of 4 bytes: the viewer's window
  LOGPAN_WINDOW_CLASS = 'QmzClsLOGPAN16'; // its class

implementation

end.
