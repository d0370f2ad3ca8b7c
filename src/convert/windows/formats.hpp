// The converter windows of the formats, each on the common pattern with its
// own texts and reader.
#pragma once

#include <cstdint>

#include "convert/schakal.hpp"  // for the atom tables the Schakal window holds
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

// Crystal structures (.cif, .cmf, .csd); a CIF library is divided first.
class CSD : public ConverterWindow {
public:
    explicit CSD(Program& p);

protected:
    void InitConverter() override;
    void ConvertFile(const std::string& name) override;
};

class XCC : public ConverterWindow {
public:
    explicit XCC(Program& p);

protected:
    void ConvertFile(const std::string& name) override;
};

class XCX : public ConverterWindow {
public:
    explicit XCX(Program& p);

protected:
    void ConvertFile(const std::string& name) override;
};

class Tripos : public ConverterWindow {
public:
    explicit Tripos(Program& p);

protected:
    void ConvertFile(const std::string& name) override;
};

class MOPAC : public ConverterWindow {
public:
    explicit MOPAC(Program& p);

protected:
    void ConvertFile(const std::string& name) override;
};

class Alchemy : public ConverterWindow {
public:
    explicit Alchemy(Program& p);

protected:
    void ConvertFile(const std::string& name) override;
};

class Schakal : public ConverterWindow {
public:
    explicit Schakal(Program& p);

protected:
    void ConvertFile(const std::string& name) override;

private:
    readers::Schakal::Tables tables_;
};

class M3D : public ConverterWindow {
public:
    explicit M3D(Program& p);

protected:
    void ConvertFile(const std::string& name) override;

private:
    // The last atom number read, kept from one conversion to the next.
    std::int32_t lastAtom_ = 0;
};

}  // namespace ravelo::windows
