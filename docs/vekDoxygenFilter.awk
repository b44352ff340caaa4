# Doxygen input filter for vek's headers, whose comments are plain text rather than Doxygen markup.
# In "///" comment lines:
# - outside `code` spans, the characters Doxygen would take for a command, an HTML tag, a link, an
#   entity or a quoted name are escaped, so the text reads as written;
# - a run of lines indented by three blanks or more (a file format, a table, a worked example) is
#   kept preformatted, unless it continues a "- " list item.
# No line is added or removed, so Doxygen's line numbers stay those of the header.
function escape(s,    out, c, k, code) {
  out = ""
  code = 0
  for (k = 1; k <= length(s); k++) {
    c = substr(s, k, 1)
    if (c == "`") code = !code
    else if (!code && c == "\"") c = "&quot;"
    else if (!code && index("\\@<>#&%$", c)) c = "\\" c
    out = out c
  }
  return out
}
function emit(line) {
  if (held) print pending
  pending = line
  held = 1
}
function endRun() {
  if (inRun) pending = pending "</pre>"
  inRun = 0
}
{
  if (!match($0, /^[ \t]*\/\/\//)) {
    endRun()
    listItem = 0
    emit($0)
    pendingIsComment = 0
    next
  }
  head = substr($0, 1, RLENGTH)
  text = substr($0, RLENGTH + 1)
  if (text ~ /^   / && (inRun || !listItem)) {
    if (!inRun && held && pendingIsComment) pending = pending " <pre>"
    else if (!inRun) head = head "<pre>"
    inRun = 1
  } else {
    endRun()
    if (text !~ /^   /) listItem = text ~ /^ *- /
  }
  emit(head escape(text))
  pendingIsComment = 1
}
END {
  endRun()
  if (held) print pending
}
