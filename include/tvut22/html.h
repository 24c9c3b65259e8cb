/* Util: HTML and plain text.
 *
 * Rules that hold for every call below and are not repeated there:
 *
 * Text     UTF-16, terminated by NUL; null is taken as the empty text. It may be the very string that the
 *          result takes the place of.
 * Result   null: nothing is delivered. Otherwise it points to null or to a string of the OLE allocator,
 *          which is reallocated to the new text (SysReAllocStringLen) or, for null, allocated
 *          (SysAllocStringLen). The caller frees it with SysFreeString. When memory runs out the old
 *          string is left as it was, or freed and null; null stays null. Texts of 2^28 characters and more
 *          count as too large for memory.
 * Markers  not 0: tags are written [_[p]_] and [_[/p]_] instead of <p> and </p>.
 * Cost     proportional to the text's length, whatever is in it. No call fails because of what a text holds.
 * Threads  Any thread at any time; a result is used by one at a time.
 *
 * docs/html.md says in full what becomes what.
 */
#ifndef TVUT22_HTML_H
#define TVUT22_HTML_H

#include <tvut22/calling.h>
#include <tvut22/ole_types.h>

/* ---- Character references --------------------------------------------------------------------- */

/* Masks what HTML cannot hold as character references. The units " & < > and TAB become &quot; &amp; &lt;
 * &gt; and &#09;, U+00A0 to U+00FF their Latin-1 names (&nbsp; to &yuml;), U+0080 becomes &euro;, all others
 * beyond ASCII become numbers of four digits (&#x20ac;), surrogates one by one. The rest, the apostrophe
 * included, stays. */
TVUT22_API void TVUT22_CALL UtilMaskAllHTMLCharacters(const wchar_t* text, BSTR* result);

/* Resolves character references. They have at most 8 characters from & to ;. Known are the names that
 * masking writes and &apos;, in exactly that case, decimal numbers (&#65;) and hexadecimal ones (&#x41;), of
 * which the low 16 bits count. Unknown names stay as they are; a number that is none, or 0, loses its
 * ampersand: &#0; becomes #0; */
TVUT22_API void TVUT22_CALL UtilDemaskAllHTMLCharacters(const wchar_t* text, BSTR* result);

/* ---- Pages and plain text ---------------------------------------------------------------------- */

/* Turns plain text into paragraphs, one for each line. A line ends with CR LF or CR (a lone LF ends none).
 * The text is masked; the characters U+00AB and U+00BB, which are brackets to UtilConvertHtml2PlainText, are
 * doubled. Without markers an empty paragraph holds <br>. */
TVUT22_API void TVUT22_CALL UtilConvertText2HTML(const wchar_t* text, BSTR* result, BOOL markers);

/* Renders HTML as plain text. Comments, scripts, styles and tags are dropped, blocks end with CR, list
 * items begin with "- ", runs of white space become one blank, links become "label [address]", references
 * are resolved, blank lines limited. Line ends of the result are single CR characters. */
TVUT22_API void TVUT22_CALL UtilConvertHtml2PlainText(const wchar_t* html, BSTR* result, BOOL markers);

#endif
