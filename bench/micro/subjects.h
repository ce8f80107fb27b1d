// What is measured: each piece of ours, and beside it the least that does the same job without it.
#pragma once

#include <string>
#include <vector>

namespace micro {

// The gadget's check of addresses that come from outside, on one address of each usual shape; and the two conversions
// that rewriting a text in its compressed form cannot do without.
void checkAddresses();
void convertAddresses();

// A radio that finds so many access points, and is associated with the last one.
class Radio {
  public:
    explicit Radio(int accessPoints);
    ~Radio();
    Radio(const Radio&) = delete;
    Radio& operator=(const Radio&) = delete;

    // The gadget's walk to its own access point, whose values it reads.
    void findAsGadget() const;
    // The same platform walk with a callback that reads each name and compares it.
    void findBare() const;

  private:
    std::string wanted_;
};

// A settings store of its own in the working folder.
class Settings {
  public:
    Settings();
    ~Settings();
    Settings(const Settings&) = delete;
    Settings& operator=(const Settings&) = delete;

    void write();
    void read() const;

  private:
    int next_ = 0;
};

// A plain file in the working folder, which gets the same bytes and fdatasync.
class RawFile {
  public:
    enum class Place { Same, End };

    explicit RawFile(Place place);
    ~RawFile();
    RawFile(const RawFile&) = delete;
    RawFile& operator=(const RawFile&) = delete;

    void write();

  private:
    Place place_;
    int descriptor_;
    int next_ = 0;
};

// Whether debug lines have a listener. Nobody listens at the start.
void setListening(bool listening);
// One debug line of the gadget. Returns whether its text was made.
bool logLine();

// One piece by its name, ready to run, for the programs that count what a single run does.
struct Subject {
    std::string name;
    void (*run)();
};
const std::vector<Subject>& subjects();

}  // namespace micro
