// Existing files and folders at the target path, and the paths that can be written.
#include "rows.h"

namespace pavonix::e2e {

namespace {

const std::string kReply = Announce(6, "<xml/>");

Scenario Download(const RowName &name, const Tree &before, const std::u16string &target, const Tree &after)
{
    return {.name = name, .before = before, .target = target, .pieces = {kReply}, .after = after};
}

Scenario WithoutForce(Scenario row)
{
    row.force = 0;
    return row;
}

Scenario Kept(const RowName &name, const std::u16string &target)
{
    const Tree files = {{"a.xml/", ""}, {"b.xml/", ""}, {"c.xml/", ""}, {"list.xml", "old"}, {"list.xsl", "other"}};
    return {.name = name,
            .before = files,
            .target = target,
            .force = 0,
            .request = std::nullopt,
            .result = 1,
            .after = files};
}

} // namespace

std::vector<Scenario> TargetRows()
{
    const std::string longFolder = std::string(150, 'a') + "/" + std::string(150, 'b');
    const std::u16string longTarget = std::u16string(150, u'a') + u"\\" + std::u16string(150, u'b') + u"\\list.xml";
    return {
        Download("an_old_file_is_replaced", {{"list.xml", "something old and longer"}}, u"list.xml",
                 {{"list.xml", "<xml/>"}}),
        Kept("force_0_keeps_a_file", u"list.xml"),
        Kept("force_0_keeps_a_file_named_like_a_folder", u"list.xml\\"),
        Kept("force_0_keeps_when_a_pattern_matches_a_file_among_folders", u"*.xml"),
        WithoutForce(Download("force_0_without_a_file", {{"list.xm", "other"}}, u"list.xml",
                              {{"list.xm", "other"}, {"list.xml", "<xml/>"}})),
        WithoutForce(
            Download("force_0_with_a_folder_of_that_name", {{"list.xml/", ""}}, u"list.xml", {{"list.xml/", ""}})),
        Download("force_with_a_folder_of_that_name", {{"list.xml/inside", "1"}}, u"list.xml",
                 {{"list.xml/inside", "1"}}),
        Download("target_is_the_folder_itself", {{"other", "1"}}, u"", {{"other", "1"}}),
        Download("existing_folder", {{"shop/other", "1"}}, u"shop\\list.xml",
                 {{"shop/list.xml", "<xml/>"}, {"shop/other", "1"}}),
        Download("one_missing_folder_is_made", {}, u"shop\\list.xml", {{"shop/list.xml", "<xml/>"}}),
        Download("one_missing_folder_below_others", {{"a/b/x", "1"}}, u"a\\b\\c\\list.xml",
                 {{"a/b/c/list.xml", "<xml/>"}, {"a/b/x", "1"}}),
        Download("two_missing_folders_are_not_made", {}, u"a\\b\\list.xml", {}),
        Download("file_in_the_folder_s_place", {{"shop", "no folder"}}, u"shop\\list.xml", {{"shop", "no folder"}}),
        Download("names_beyond_ascii_in_the_code_page", {}, u"K\u00e4se\\\u20ac \u00fc.xml",
                 {{"K\u00e4se/\u20ac \u00fc.xml", "<xml/>"}}),
        // The stream opens by the path in the code page, of 260 bytes at most; folders
        // are made by the wide path.
        Download("a_name_outside_the_code_page_is_not_stored", {}, u"\u732b.xml", {}),
        Download("a_folder_outside_the_code_page_is_made_and_nothing_stored", {}, u"\u732b\\list.xml",
                 {{"\u732b/", ""}}),
        Download("an_old_file_at_an_overlong_path_stays", {{longFolder + "/list.xml", "old"}}, longTarget,
                 {{longFolder + "/list.xml", "old"}}),
        Download("a_name_too_long_for_a_file_system", {}, std::u16string(300, u'n') + u".xml", {}),
        Download("a_missing_folder_of_thousands_of_characters", {}, std::u16string(5000, u'b') + u"\\list.xml", {}),
    };
}

} // namespace pavonix::e2e
