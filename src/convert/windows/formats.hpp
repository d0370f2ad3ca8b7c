// The converter windows of the formats, each on the common pattern with its
// own texts and reader.
#pragma once

#include "convert/windows/converter_window.hpp"

namespace ravelo::windows {

class XYZ : public ConverterWindow {
public:
    explicit XYZ(Program& p);

protected:
    void ConvertFile(const std::string& name) override;
};

class MDL : public ConverterWindow {
public:
    explicit MDL(Program& p);

protected:
    void ConvertFile(const std::string& name) override;
};

class PDB : public ConverterWindow {
public:
    explicit PDB(Program& p);

protected:
    void InitConverter() override;
    void ConvertFile(const std::string& name) override;
};

}  // namespace ravelo::windows
