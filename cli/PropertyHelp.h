// PropertyHelp.h - the job properties a user sets most, with their types and defaults, for
// `ormida --help`. The library accepts every name of its property table; this list is the
// part of it that has an effect.
#pragma once

namespace ormida::cli {

struct PropertyHelp {
  const char* name;
  const char* type;
  const char* fallback;
  const char* meaning;
};

inline constexpr PropertyHelp kProperties[] = {
    {"InputFilename", "string", "unset", "input files joined by \";\"; an item with \"*\" is a pattern"},
    {"InputFilenamePattern", "string", "unset", "input file patterns, read when InputFilename is unset"},
    {"InputMemoryAddress", "string", "unset", "ADDRESS:SIZE items in decimal (for programs, not the shell)"},
    {"WorkSpace", "string", "empty", "directory that relative paths are resolved against"},
    {"OutputFilename", "string", "unset", "output file"},
    {"OutputFilename.Format", "string", "HOCR", "formats joined by \";\": hocr, json, webanno, txtutf8, html"},
    {"Compare", "boolean", "false", "compare the main layout with a second layout"},
    {"Compare.With", "string", "unset", "document to compare with (else the second input)"},
    {"Compare.Level", "enum", "Word", "None, Glyph, Word, Line"},
    {"Compare.Mode", "enum", "Text", "None, Text, Entity"},
    {"Compare.EditDistance", "boolean", "true", "count errors by edit distance"},
    {"Compare.PartialSegmentationErrors", "boolean", "true", "count partial segmentation errors"},
    {"Compare.TransformStrategy", "enum", "Corner", "None, Corner, Center"},
    {"Compare.OutputFilename", "string", "unset", "file that receives the comparison result JSON"},
    {"ExtractFromLayout", "boolean", "false", "compare extracted pages with a reference (CompareErrorRate)"},
    {"CheckMask", "boolean", "false", "evaluate region templates (CheckMask.Regions)"},
    {"EntityExtraction", "boolean", "false", "extract sensitive entities"},
    {"WordRecognizer", "boolean", "false", "judge text quality with dictionaries"},
    {"BestOfLayout", "boolean", "false", "merge all inputs into a best-of layout"},
    {"AddressRecognition", "boolean", "false", "recognise address blocks instead of writing output"},
    {"TraceFilename", "string", "unset", "write a diagnostic trace to this file"},
};

// Results that --get can print.
inline constexpr const char* kResults[] = {
    "Compare.Result", "CompareErrorRate", "CheckMask.Result", "WordRecognizer.Result",
    "AddressRecognition.Output", "AddressRecognition.TestRecipient",
    "AddressRecognition.TestSender", "TransformLayout"};

}  // namespace ormida::cli
