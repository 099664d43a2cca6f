#include <maya/MArgList.h>
#include <maya/MPxData.h>

MPxData::MPxData() = default;
MPxData::~MPxData() = default;

MStatus MPxData::readASCII(const MArgList&, unsigned int&) {
    return MS::kNotImplemented;
}
MStatus MPxData::readBinary(std::istream&, unsigned int) {
    return MS::kNotImplemented;
}
MStatus MPxData::writeASCII(std::ostream&) {
    return MS::kNotImplemented;
}
MStatus MPxData::writeBinary(std::ostream&) {
    return MS::kNotImplemented;
}
