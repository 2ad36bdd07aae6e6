#pragma once

#include "Audio/VST/Interfaces/FUnknown.h"

namespace Steinberg {

/// Who made the classes of a factory.
struct PFactoryInfo {
    enum FactoryFlags : int32 {
        kNoFlags = 0,
        kClassesDiscardable = 1 << 0,
        kLicenseCheck = 1 << 1,
        kComponentNonDiscardable = 1 << 3,
        kUnicode = 1 << 4,
    };
    enum : int32 { kNameSize = 64, kURLSize = 256, kEmailSize = 128 };

    char8 vendor[kNameSize];
    char8 url[kURLSize];
    char8 email[kEmailSize];
    int32 flags;
};

/// A class of a factory, first form.
struct PClassInfo {
    enum ClassCardinality : int32 { kManyInstances = 0x7fffffff };
    enum : int32 { kCategorySize = 32, kNameSize = 64 };

    TUID cid;
    int32 cardinality;
    char8 category[kCategorySize];
    char8 name[kNameSize];
};

/// A class of a factory, with version and flags.
struct PClassInfo2 {
    enum : int32 { kVendorSize = 64, kVersionSize = 64, kSubCategoriesSize = 128 };

    TUID cid;
    int32 cardinality;
    char8 category[PClassInfo::kCategorySize];
    char8 name[PClassInfo::kNameSize];
    uint32 classFlags;
    char8 subCategories[kSubCategoriesSize]; ///< divided by vertical bars
    char8 vendor[kVendorSize];               ///< empty: the factory's
    char8 version[kVersionSize];
    char8 sdkVersion[kVersionSize];
};

/// The same with texts in UTF-16.
struct PClassInfoW {
    enum : int32 { kVendorSize = 64, kVersionSize = 64, kSubCategoriesSize = 128 };

    TUID cid;
    int32 cardinality;
    char8 category[PClassInfo::kCategorySize];
    char16 name[PClassInfo::kNameSize];
    uint32 classFlags;
    char8 subCategories[kSubCategoriesSize];
    char16 vendor[kVendorSize];
    char16 version[kVersionSize];
    char16 sdkVersion[kVersionSize];
};

/// What a module exports: lists its classes and makes objects of them.
class IPluginFactory : public FUnknown {
    TSM_VST_INTERFACE(IPluginFactory, 0x7A4D811C, 0x52114A1F, 0xAED9D2EE, 0x0B43BF9F)

    virtual tresult getFactoryInfo(PFactoryInfo* info) = 0;
    virtual int32 countClasses() = 0;
    virtual tresult getClassInfo(int32 index, PClassInfo* info) = 0;
    /// Both identifiers are pointers to 16 bytes. The caller owns the reference in `*obj`, which is
    /// null with kNoInterface for an unknown class or interface.
    virtual tresult createInstance(FIDString cid, FIDString iid, void** obj) = 0;
};

class IPluginFactory2 : public IPluginFactory {
    TSM_VST_INTERFACE(IPluginFactory2, 0x0007B650, 0xF24B4C0B, 0xA464EDB9, 0xF00B2ABB)

    virtual tresult getClassInfo2(int32 index, PClassInfo2* info) = 0;
};

class IPluginFactory3 : public IPluginFactory2 {
    TSM_VST_INTERFACE(IPluginFactory3, 0x4555A2AB, 0xC1234E57, 0x9B122910, 0x36878931)

    virtual tresult getClassInfoUnicode(int32 index, PClassInfoW* info) = 0;
    /// The host's object before instances are made; null at the end.
    virtual tresult setHostContext(FUnknown* context) = 0;
};

} // namespace Steinberg
