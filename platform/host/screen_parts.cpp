#define EDJE_EDIT_IS_UNSTABLE_AND_I_KNOW_ABOUT_IT
#include "host/screen_parts.h"

#include <Edje_Edit.h>
#include <Elementary.h>

#include <algorithm>
#include <map>
#include <string_view>
#include <utility>

#include "host/screen.h"

namespace {

struct Declared {
    std::string name;
    std::string source;  // of a GROUP part: the group it shows
    Edje_Part_Type type;
};

std::string orEmpty(const char* text) {
    return text == nullptr ? "" : text;
}

std::vector<Declared> readDeclared(Evas* canvas, const std::string& file, const std::string& group) {
    std::vector<Declared> declared;
    Evas_Object* const reader = edje_edit_object_add(canvas);
    if (edje_object_file_set(reader, file.c_str(), group.c_str())) {
        Eina_List* const names = edje_edit_parts_list_get(reader);
        for (const Eina_List* node = names; node != nullptr; node = eina_list_next(node)) {
            const char* const name = static_cast<const char*>(eina_list_data_get(node));
            Eina_Stringshare* const source = edje_edit_part_source_get(reader, name);
            declared.push_back({name, orEmpty(source), edje_edit_part_type_get(reader, name)});
            eina_stringshare_del(source);
        }
        edje_edit_string_list_free(names);
    }
    evas_object_del(reader);
    return declared;
}

// A group's parts never change, so each is read once.
const std::vector<Declared>& declaredParts(Evas* canvas, const std::string& file, const std::string& group) {
    static std::map<std::pair<std::string, std::string>, std::vector<Declared>> known;
    const auto [row, fresh] = known.try_emplace({file, group});
    if (fresh) row->second = readDeclared(canvas, file, group);
    return row->second;
}

bool isText(Edje_Part_Type type) {
    return type == EDJE_PART_TYPE_TEXT || type == EDJE_PART_TYPE_TEXTBLOCK;
}

// Walks the groups of one layout object. Parts of nested groups are reached from the outermost, by their full names.
class Collector {
  public:
    Collector(Evas_Object* layout, std::string file) : layout_(layout), file_(std::move(file)) {}

    void collect(const std::string& group, const std::string& prefix) {
        for (const Declared& part : declaredParts(evas_object_evas_get(layout_), file_, group)) {
            add(part, prefix + part.name);
        }
    }

    std::vector<host::screen::Part> take() { return std::move(parts_); }

  private:
    void add(const Declared& part, const std::string& name) {
        if (part.type == EDJE_PART_TYPE_GROUP) {
            collect(part.source, name + ":");
        } else if (isText(part.type)) {
            auto* const object = const_cast<Evas_Object*>(edje_object_part_object_get(layout_, name.c_str()));
            if (!host::screen::seenText(object).empty()) parts_.push_back({name, object, true});
        } else if (part.type == EDJE_PART_TYPE_SWALLOW) {
            Evas_Object* const content = edje_object_part_swallow_get(layout_, name.c_str());
            if (content != nullptr && host::screen::isSeen(content)) parts_.push_back({name, content, false});
        }
    }

    Evas_Object* layout_;
    std::string file_;
    std::vector<host::screen::Part> parts_;
};

// The popup's own rows of buttons: code knows their places as "button1" to "button3".
void nameAsPopupDoes(std::vector<host::screen::Part>& parts) {
    constexpr std::string_view kPrefix = "elm.swallow.content.";
    for (host::screen::Part& part : parts) {
        if (part.name.starts_with(kPrefix)) part.name.erase(0, kPrefix.size());
    }
}

}  // namespace

namespace host::screen {

std::vector<Part> partsOf(Evas_Object* layout) {
    const char* file = nullptr;
    const char* group = nullptr;
    edje_object_file_get(layout, &file, &group);
    if (file == nullptr || group == nullptr) return {};
    Collector collector(layout, file);
    collector.collect(group, "");
    std::vector<Part> parts = collector.take();
    if (std::string_view(group).starts_with("elm/popup/buttons")) nameAsPopupDoes(parts);
    return parts;
}

std::vector<Part> parts(Evas_Object* root) {
    std::vector<Part> found;
    const Visit collect = [&found](Evas_Object* object) {
        if (!isType(object, "elm_layout")) return true;
        for (Part& part : partsOf(elm_layout_edje_get(object)))
            found.push_back(std::move(part));
        return true;
    };
    isType(root, "elm_win") ? walk(root, collect) : walkInside(root, collect);
    return found;
}

std::string partAround(Evas_Object* widget, const std::vector<Part>& parts) {
    for (Evas_Object* object = widget; object != nullptr; object = evas_object_smart_parent_get(object)) {
        const auto part = std::ranges::find(parts, object, &Part::object);
        if (part != parts.end()) return part->name;
    }
    return "";
}

}  // namespace host::screen
