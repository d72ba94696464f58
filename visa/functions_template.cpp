// Opening and closing, attributes, texts and locks.
#include "visa/functions.h"
#include "visa/guard.h"
#include "visa/resource_manager.h"
#include "visa/status_text.h"

namespace visa_provider {

namespace {

// The time-out that viOpen takes 0 for (VPP-4.3, recommendation 4.3.3).
constexpr ViUInt32 kDefaultOpenTimeout = 2000;

ViStatus Open(ViSession manager, ViConstRsrc name, ViAccessMode mode, ViUInt32 timeout,
              ViSession& handle) {
    std::shared_ptr<Session> session;
    if (const ViStatus status = OpenSession(manager, name, timeout, session); status < 0) {
        return status;
    }
    if ((mode & VI_EXCLUSIVE_LOCK) != 0) {
        std::string noKey;
        if (const ViStatus status = session->Lock(VI_EXCLUSIVE_LOCK, timeout, {}, noKey);
            status < 0) {
            return status;
        }
    }
    const ViSession given = ObjectTable::Instance().Insert(session, manager);
    if (given == 0) {
        return VI_ERROR_INV_OBJECT;  // the resource manager was closed meanwhile
    }
    handle = given;
    return (mode & VI_LOAD_CONFIG) != 0 ? VI_WARN_CONFIG_NLOADED : VI_SUCCESS;
}

}  // namespace

ViStatus viOpenDefaultRM(ViPSession session) {
    return Guarded([&] {
        if (!session) {
            return VI_ERROR_USER_BUF;
        }
        *session = ObjectTable::Instance().Insert(std::make_shared<ResourceManager>(), 0);
        return VI_SUCCESS;
    });
}

ViStatus viOpen(ViSession manager, ViConstRsrc name, ViAccessMode mode, ViUInt32 timeout,
                ViPSession session) {
    if (session) {
        *session = VI_NULL;
    }
    return WithObject<ResourceManager>("viOpen", manager, [&](ResourceManager&) {
        if (!session) {
            return VI_ERROR_USER_BUF;
        }
        if (!name) {
            return VI_ERROR_INV_RSRC_NAME;
        }
        if ((mode & ~(VI_EXCLUSIVE_LOCK | VI_LOAD_CONFIG)) != 0) {
            return VI_ERROR_INV_ACC_MODE;
        }
        return Open(manager, name, mode, timeout == 0 ? kDefaultOpenTimeout : timeout, *session);
    });
}

ViStatus viClose(ViObject object) {
    return Guarded([&] {
        if (object == VI_NULL) {
            return VI_WARN_NULL_OBJECT;
        }
        const auto removed = ObjectTable::Instance().Remove(object);
        if (removed.empty()) {
            return VI_ERROR_INV_OBJECT;
        }
        for (const auto& one : removed) {
            one->Close();
        }
        return VI_SUCCESS;
    });
}

ViStatus viGetAttribute(ViObject object, ViAttr attribute, void* value) {
    return WithObject<Object>("viGetAttribute", object, [&](const Object& found) {
        if (!value) {
            return VI_ERROR_USER_BUF;
        }
        const auto state = found.Attribute(attribute);
        if (!state) {
            return VI_ERROR_NSUP_ATTR;
        }
        StoreValue(*state, value);
        return VI_SUCCESS;
    });
}

ViStatus viSetAttribute(ViObject object, ViAttr attribute, ViAttrState value) {
    return WithObject<Object>("viSetAttribute", object,
                              [&](Object& found) { return found.SetAttribute(attribute, value); });
}

ViStatus viStatusDesc(ViObject object, ViStatus status, ViChar* description) {
    return Guarded([&] {
        if (!description) {
            return VI_ERROR_USER_BUF;
        }
        bool isKnown = false;
        StoreText(StatusText(status, isKnown), description);
        if (!ObjectTable::Instance().Find(object)) {
            return VI_ERROR_INV_OBJECT;
        }
        return isKnown ? VI_SUCCESS : VI_WARN_UNKNOWN_STATUS;
    });
}

ViStatus viTerminate(ViSession session, ViUInt16 degree, ViJobId job) {
    return WithSession("viTerminate", session, [&](Session& found) {
        return degree == VI_NULL ? found.Terminate(job) : VI_ERROR_INV_DEGREE;
    });
}

ViStatus viLock(ViSession session, ViAccessMode type, ViUInt32 timeout, ViConstKeyId requestedKey,
                ViChar* accessKey) {
    return WithSession("viLock", session, [&](Session& found) {
        std::string key;
        const ViStatus status = found.Lock(type, timeout, requestedKey ? requestedKey : "", key);
        if (status >= 0 && accessKey) {
            StoreText(key, accessKey);
        }
        return status;
    });
}

ViStatus viUnlock(ViSession session) {
    return WithSession("viUnlock", session, [](Session& found) { return found.Unlock(); });
}

}  // namespace visa_provider
