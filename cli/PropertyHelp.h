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
    {"TolerantHocr", "boolean", "false", "read hOCR as engines write it: header/caption/float lines, ocrx_cinfo glyphs, classes on any element, no ids as text, HTML that is not XML"},
    {"OutputFilename", "string", "unset", "output file"},
    {"OutputFilename.Format", "string", "HOCR", "formats joined by \";\": hocr, json, webanno, txtutf8, html"},
    {"XmlLayoutFormats", "boolean", "false", "also offer the output formats alto (ALTO 4.4) and page (PAGE XML 2019); ALTO and PAGE input is read without it"},
    {"WebAnnoOffsets", "string", "utf8", "utf8 (bytes) or utf16 (code units, as WebAnno and INCEpTION count)"},
    {"Compare", "boolean", "false", "compare the main layout with a second layout"},
    {"Compare.With", "string", "unset", "document to compare with (else the second input)"},
    {"Compare.Level", "enum", "Word", "None, Glyph, Word, Line"},
    {"Compare.Mode", "enum", "Text", "None, Text, Entity"},
    {"Compare.EditDistance", "boolean", "true", "count errors by edit distance"},
    {"Compare.PartialSegmentationErrors", "boolean", "true", "count partial segmentation errors"},
    {"Compare.TransformStrategy", "enum", "Corner", "None, Corner, Center"},
    {"Compare.OutputFilename", "string", "unset", "file that receives the comparison result JSON"},
    {"Compare.Normalization", "string", "unset", "none, nfc, nfkc: Unicode normalisation for CER/WER; setting it adds their counts (\"metrics\") to the result"},
    {"Compare.Graphemes", "boolean", "false", "CER counts grapheme clusters instead of code points (adds \"metrics\" too)"},

    {"ComparisonReportFilename", "string", "unset", "with Compare: also write a visual HTML report of the differences to this file"},
    {"ExtractFromLayout", "boolean", "false", "measure the main layout inside the zones of a reference, page by page (CompareErrorRate)"},
    {"ExtractFromLayout.With", "string", "unset", "the reference whose areas are the zones (else the second input)"},
    {"ExtractFromLayout.Level", "enum", "Line", "None, Glyph, Word, Line: the nodes assigned to zones"},
    {"ExtractFromLayout.PageOffset", "integer", "0", "main page i is measured against reference page i + offset"},
    {"ExtractFromLayout.EditDistance", "boolean", "true", "count character errors (else each zone right or wrong)"},
    {"ExtractFromLayout.PartialSegmentationErrors", "boolean", "true", "count a node mostly outside its zone, its characters outside as errors"},
    {"ExtractFromLayout.RemoveMatchingBoxes", "boolean", "true", "a node feeds only the zone holding most of it"},
    {"ExtractFromLayout.TransformStrategy", "enum", "Corner", "None, Corner, Center"},
    {"ExtractFromLayout.OutputFilename", "string", "unset", "file that receives the zone-by-zone JSON"},
    {"CheckMask", "boolean", "false", "evaluate region templates on the main layout (CheckMask.Result)"},
    {"CheckMask.Regions", "string", "empty", "the region template JSON (=@file reads it from a file)"},
    {"CheckMask.OverlapThreshold", "double", "0", "share of a word's area inside a region (0: any overlap)"},
    {"CheckMask.OutputFilename", "string", "unset", "file that receives the region result JSON"},
    {"EntityExtraction", "boolean", "false", "find and mark sensitive entities (EntityExtraction.Result)"},
    {"EntityExtraction.Configuration", "string", "data/entities/default.json", "entity configuration file"},
    {"EntityExtraction.OutputFilename", "string", "unset", "file that receives the entities JSON"},
    {"WordRecognizer", "boolean", "false", "judge text quality with dictionaries (WordRecognizer.Result)"},
    {"WordRecognizer.DictionaryWorkSpace", "string", "unset", "folder of the Hunspell dictionaries (else WorkSpace, data, /usr/share/hunspell)"},
    {"WordRecognizer.Options", "string", "empty", "ALL, FormatCsv, FormatJSON, Language=<code>, DigramTable=<file>, NoMarkWords, NoDehyphenate"},
    {"WordRecognizer.StatisticsOutputFormat", "string", "text", "text, csv, json"},
    {"WordRecognizer.StatisticsPerPage", "boolean", "false", "report every page too"},
    {"WordRecognizer.StatisticsFilename", "string", "unset", "file that receives the report"},
    {"BestOfLayout", "boolean", "false", "merge all inputs (recognitions of one document) into one best-of layout, the new main document"},
    {"BestOfLayout.PageWidth", "integer", "0", "common page width (with PageHeight); 0: from ReferenceImageFilename, else the largest page"},
    {"BestOfLayout.ReferenceImageFilename", "string", "empty", "PNG or JPEG page image that gives the page size"},
    {"BestOfLayout.OverlapThreshold", "float", "0.7", "share of the inputs that must agree on a word (0.7 of 3: 2)"},
    {"BestOfLayout.TraceDirectory", "string", "empty", "folder for one JSON file per page with the clusters and votes"},
    {"AddressRecognition", "boolean", "false", "recognise recipient and sender blocks instead of writing output; layouts give AddressRecognition.Output, also written to OutputFilename"},
    {"AddressRecognition.TestRecipient", "any", "unset", "with a text input: is it a recipient block? (AddressRecognition.TestRecipient: 1 or 0)"},
    {"AddressRecognition.TestSender", "any", "unset", "with a text input: is it a sender block (return address, letterhead)? (AddressRecognition.TestSender)"},
    {"AddressRecognition.TestRecipientSender", "any", "unset", "with two text inputs: the first as recipient, the second as sender"},
    {"TraceFilename", "string", "unset", "write a diagnostic trace to this file"},
};

// Results that --get can print.
inline constexpr const char* kResults[] = {"Compare.Result", "CompareErrorRate", "WordRecognizer.Result",
                                           "CheckMask.Result", "EntityExtraction.Result",
                                           "TransformLayout", "AddressRecognition.Output",
                                           "AddressRecognition.TestRecipient",
                                           "AddressRecognition.TestSender"};

}  // namespace ormida::cli
