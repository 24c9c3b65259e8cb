// Each kind of parameter, given by the Pascal unit as the sample of docs/other-languages.md does not.
program pascal_calls;
{$MODE DELPHI}{$APPTYPE CONSOLE}
uses Windows, ActiveX, Variants, tvut22;

var
  faults, runs: Integer;
  job: ProfJob;
  stream: IStream;
  number: Int64;
  fraction, part: Double;
  value, got: OleVariant;
  sides, shown: TRect;
  buffer: array[0..9] of WideChar;
  texts: array[0..1] of PWideChar;
  options: UtilZipOptions;
  zip: UtilZip;
  pool: UtilThreadPool;

procedure Expect(holds: Boolean; what: string);
begin
  if holds then Exit;
  Inc(faults);
  WriteLn('wrong: ', what);
end;

procedure Run(reason: Cardinal; user: Cardinal; abort: PInteger); stdcall;
begin
  if (reason = UTIL_POOL_RUN) and (abort^ = 0) then
    InterlockedExchangeAdd(runs, user);
end;

function Pass(entry: PUtilZipEntry; user: Cardinal): Integer; stdcall;
begin
  Expect((entry^.size = SizeOf(UtilZipEntry)) and (user = 7), 'a callback''s structure');
  Inc(runs);
  Result := UTIL_ZIP_GO;
end;

begin
  CreateStreamOnHGlobal(0, True, stream);
  job := ProfJobOpenStream(nil);
  ProfSetInt64W(job, nil, 'Number', -5000000000);
  ProfSetDoubleA(job, nil, 'Fraction', 1.25);
  value := 'text';
  ProfSetVariant(job, nil, 'Value', @value);
  SetRect(sides, 1, 2, 3, 4);
  ProfSetRectW(job, nil, 'Rect', @sides);
  Expect(ProfSaveToStream(job, stream, PROF_FORM_TEXT) = PROF_OK, 'saving to a stream');
  ProfJobClose(job);

  job := ProfJobOpenStream(stream);
  Expect((ProfGetInt64W(job, nil, 'Number', @number, 1) = PROF_OK) and (number = -5000000000), 'Int64');
  Expect((ProfGetDoubleW(job, nil, 'Fraction', @fraction, 1) = PROF_OK) and (fraction = 1.25), 'Double');
  Expect((ProfGetDoubleW(job, nil, 'None', @part, 0.5) = PROF_NOT_FOUND) and (part = 0.5), 'a default Double');
  Expect((ProfGetVariant(job, nil, 'Value', @got) = PROF_OK) and (got = 'text'), 'OleVariant');
  Expect((ProfGetRectW(job, nil, 'Rect', @shown, nil) = PROF_OK) and (shown.Bottom = 4), 'a structure');
  ProfJobClose(job);

  Expect(UtilSafeSprintf(buffer, Length(buffer), '%d %s', 42, PWideChar('text')) = 7, 'variable arguments');
  Expect(WideString(buffer) = '42 text', 'a buffer');

  FillChar(options, SizeOf(options), 0);
  options.size := SizeOf(options);
  options.callback := Pass;
  options.user := 7;
  zip := UtilZIPCreate('calls.zip', @options);
  texts[0] := 'pascal_calls.exe';
  texts[1] := 'tvUT22.dll';
  Expect(UtilZIPAppendList(zip, @texts[0], 2, nil) = UTIL_OK, 'a list of texts');
  Expect((UtilZIPClose(zip, False) = UTIL_OK) and (runs >= 4), 'a callback of a structure');

  runs := 0;
  pool := UtilThreadPoolOpen('calls', 2, 0);
  Expect(UtilThreadPoolAdd(pool, Run, 3) = UTIL_OK, 'a job');
  UtilThreadPoolFinalize(pool, UTIL_POOL_FOREVER);
  Expect((UtilThreadPoolClose(pool) = UTIL_OK) and (runs = 3), 'a callback on another thread');
  ExitCode := faults;
end.
