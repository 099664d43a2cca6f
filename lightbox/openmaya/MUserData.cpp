#include <maya/MUserData.h>

MUserData::MUserData(bool deleteAfterUse)
    : deleteAfterUse_(deleteAfterUse) {}

MUserData::~MUserData() = default;
